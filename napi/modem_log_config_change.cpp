#include <utility>

#include "client/zelk_log_service_client.h"
#include "common/module_log.h"
#include "napi/calls/config_change_call.h"
#include "napi/functions.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

napi_value ChangeModemLogConfig(napi_env env, napi_callback_info info)
{
    if (!NapiUtil::IsSystemAppCall()) {
        ZELK_ERROR("ChangeModemLogConfig: current app is not system app, so return");
        return nullptr;
    }
    auto context =
        ReadConfigChangeCall(env, info,
                             {"ChangeModemLogConfig: Illegal params", "ChangeModemLogConfig: error object type",
                              "ChangeModemLogConfig: error array type"});
    if (context == nullptr) {
        return nullptr;
    }
    return NapiUtil::StartCall(env, std::move(context), "ChangeModemLogConfig", NativeChangeModemLogConfig,
                               ChangeModemLogConfigCallback);
}

void NativeChangeModemLogConfig(napi_env, void* data)
{
    auto* context = ContextFrom<ChangeConfigContext>(data);
    if (context == nullptr) {
        ZELK_ERROR("NativeChangeModemLogConfig: data is null");
        return;
    }
    const auto client = DelayedSingleton<ZelkLogServiceClient>::GetInstance();
    context->errorCode = client->ChangeModemLogConfig(context->configs, context->result);
    context->resolved = context->errorCode == 0;
}

void ChangeModemLogConfigCallback(napi_env env, napi_status, void* data)
{
    auto* context = ContextFrom<ChangeConfigContext>(data);
    if (context == nullptr) {
        ZELK_ERROR("ChangeModemLogConfigCallback: data is null");
        return;
    }
    if (!context->resolved) {
        // The result is delivered all the same, as the value of the rejection.
        ZELK_ERROR("ChangeModemLogConfigCallback: asyncContext's resolved is false");
    }
    NapiUtil::AnswerBoolean(env, context, context->result);
}

} // namespace OHOS::HiviewDFX
