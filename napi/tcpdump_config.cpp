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

// "value" is read as text, whatever its type, and always converted. An array or object counts as the empty text.
void ExpandAnyValue(napi_env env, const Json::Value& value, napi_value item)
{
    const bool hasText = !value.isArray() && !value.isObject();
    napi_value object = nullptr;
    napi_create_object(env, &object);
    ConvertJsonToObject(env, hasText ? value.asString() : "", object);
    napi_set_named_property(env, item, "value", object);
}

} // namespace

napi_value GetTcpdumpConfig(napi_env env, napi_callback_info info)
{
    if (!NapiUtil::IsSystemAppCall()) {
        ZELK_ERROR("GetTcpdumpConfig: current app is not system app, so return");
        return nullptr;
    }
    // "oe" is part of the text.
    auto context = ReadConfigQueryCall(env, info,
                                       {"GetTcpdumpConfig: Illegal params",
                                        "GetTcpdumpConfig: error object type oe error array type",
                                        "GetTcpdumpConfig: only one param", "GetTcpdumpConfig: Illegal params num"});
    if (context == nullptr) {
        return nullptr;
    }
    return NapiUtil::StartCall(env, std::move(context), "GetTcpdumpConfig", NativeGetTcpdumpConfig,
                               GetTcpdumpConfigCallback);
}

void NativeGetTcpdumpConfig(napi_env env, void* data)
{
    auto* context = ContextFrom<GetConfigContext>(data);
    if (context == nullptr) {
        ZELK_ERROR("NativeGetTcpdumpConfig: data is null");
        NapiUtil::ThrowError(env, 1, "error");
        return;
    }
    const auto client = DelayedSingleton<ZelkLogServiceClient>::GetInstance();
    context->errorCode = client->GetTcpdumpConfig(context->configKeys, context->callbackConfigs);
    ZELK_INFO("[TCP dump] NativeGetTcpdumpConfig errorCode %{public}d", context->errorCode);
    context->resolved = context->errorCode == 0;
}

void GetTcpdumpConfigCallback(napi_env env, napi_status, void* data)
{
    auto* context = ContextFrom<GetConfigContext>(data);
    if (context == nullptr) {
        ZELK_ERROR("GetTcpdumpConfigCallback: data is null");
        return;
    }
    // Logged on every call, at ERROR level even when nothing is wrong.
    ZELK_ERROR("[TCP dump] GetTcpdumpConfigCallback %{public}d - %{public}d", context->callbackConfigs.empty(),
               !context->resolved);
    // Not answered in either of these two cases: the promise stays pending and the context is kept.
    if (context->callbackConfigs.empty() || !context->resolved) {
        ZELK_ERROR("GetTcpdumpConfigCallback: callbackConfigs is null");
        return;
    }
    napi_value configs = nullptr;
    if (!ConfigReplyToArray(env, context->callbackConfigs, ExpandAnyValue, &configs)) {
        ZELK_ERROR("GetTcpdumpConfigCallback: Failed to parse json");
        return;
    }
    NapiUtil::Answer(env, context, configs);
}

} // namespace OHOS::HiviewDFX
