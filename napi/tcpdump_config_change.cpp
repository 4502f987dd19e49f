#include <utility>

#include "client/zelk_log_service_client.h"
#include "common/module_log.h"
#include "napi/calls/config_change_call.h"
#include "napi/functions.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

napi_value ChangeTcpdumpConfig(napi_env env, napi_callback_info info)
{
    // "enter" and "end" are written at ERROR level on every call, although nothing is wrong.
    ZELK_ERROR("[TCP dump] napi ChangeTcpdumpConfig: enter");
    if (!NapiUtil::IsSystemAppCall()) {
        ZELK_ERROR("ChangeTcpdumpConfig: current app is not system app, so return");
        return nullptr;
    }
    auto context = ReadConfigChangeCall(env, info,
                                        {"[TCP dump] napi ChangeTcpdumpConfig: Illegal params",
                                         "[TCP dump] napi ChangeTcpdumpConfig: error object type",
                                         "[TCP dump] napi ChangeTcpdumpConfig: error array type"});
    if (context == nullptr) {
        return nullptr;
    }
    ZELK_ERROR("[TCP dump] napi ChangeTcpdumpConfig: end");
    return NapiUtil::StartCall(env, std::move(context), "ChangeTcpdumpConfig", NativeChangeTcpdumpConfig,
                               ChangeTcpdumpConfigCallback);
}

void NativeChangeTcpdumpConfig(napi_env, void* data)
{
    auto* context = ContextFrom<ChangeConfigContext>(data);
    if (context == nullptr) {
        ZELK_ERROR("NativeChangeTcpdumpConfig: data is null");
        return;
    }
    const auto client = DelayedSingleton<ZelkLogServiceClient>::GetInstance();
    context->errorCode = client->ChangeTcpdumpConfig(context->configs, context->result);
    context->resolved = context->errorCode == 0;
}

void ChangeTcpdumpConfigCallback(napi_env env, napi_status, void* data)
{
    auto* context = ContextFrom<ChangeConfigContext>(data);
    if (context == nullptr) {
        // The modem log's text, on purpose.
        ZELK_ERROR("ChangeModemLogConfigCallback: data is null");
        return;
    }
    if (!context->resolved) {
        // Not answered, and not logged either: the promise stays pending and the context is kept.
        return;
    }
    NapiUtil::AnswerBoolean(env, context, context->result);
}

} // namespace OHOS::HiviewDFX
