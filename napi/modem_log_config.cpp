#include <utility>

#include "client/zelk_log_service_client.h"
#include "common/module_log.h"
#include "config/json_to_object.h"
#include "napi/calls/config_query_call.h"
#include "napi/calls/config_reply.h"
#include "napi/functions.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

namespace {

// "value" becomes an object in every case, an empty one when the service sent no string.
void ExpandTextValue(napi_env env, const Json::Value& value, napi_value item)
{
    napi_value object = nullptr;
    napi_create_object(env, &object);
    if (value.isString()) {
        ConvertJsonToObject(env, value.asString(), object);
    }
    napi_set_named_property(env, item, "value", object);
}

} // namespace

napi_value GetModemLogConfig(napi_env env, napi_callback_info info)
{
    if (!NapiUtil::IsSystemAppCall()) {
        ZELK_ERROR("GetModemLogConfig: current app is not system app, so return");
        return nullptr;
    }
    // "oe" is part of the text.
    auto context = ReadConfigQueryCall(env, info,
                                       {"GetModemLogConfig: Illegal params",
                                        "GetModemLogConfig: error object type oe error array type",
                                        "GetModemLogConfig: only one param", "GetModemLogConfig: Illegal params num"});
    if (context == nullptr) {
        return nullptr;
    }
    return NapiUtil::StartCall(env, std::move(context), "GetModemLogConfig", NativeGetModemLogConfig,
                               GetModemLogConfigCallback);
}

void NativeGetModemLogConfig(napi_env env, void* data)
{
    auto* context = ContextFrom<GetConfigContext>(data);
    if (context == nullptr) {
        ZELK_ERROR("NativeGetModemLogConfig: data is null");
        NapiUtil::ThrowError(env, 1, "error");
        return;
    }
    const auto client = DelayedSingleton<ZelkLogServiceClient>::GetInstance();
    context->errorCode = client->GetModemLogConfig(context->configKeys, context->callbackConfigs);
    context->resolved = context->errorCode == 0;
}

void GetModemLogConfigCallback(napi_env env, napi_status, void* data)
{
    auto* context = ContextFrom<GetConfigContext>(data);
    if (context == nullptr) {
        ZELK_ERROR("GetModemLogConfigCallback: data is null");
        return;
    }
    // Not answered in either of these two cases: the promise stays pending and the context is kept.
    if (context->callbackConfigs.empty() || !context->resolved) {
        ZELK_ERROR("GetModemLogConfigCallback: callbackConfigs is null");
        return;
    }
    napi_value configs = nullptr;
    if (!ConfigReplyToArray(env, context->callbackConfigs, ExpandTextValue, &configs)) {
        ZELK_ERROR("GetModemLogConfigCallback: Failed to parse json");
        return;
    }
    NapiUtil::Answer(env, context, configs);
}

} // namespace OHOS::HiviewDFX
