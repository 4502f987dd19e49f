#include <utility>

#include "client/zelk_log_service_client.h"
#include "common/module_log.h"
#include "napi/calls/switch_call.h"
#include "napi/functions.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

napi_value HandleTcpdumpSwitch(napi_env env, napi_callback_info info)
{
    if (!NapiUtil::IsSystemAppCall()) {
        ZELK_ERROR("HandleTcpdumpSwitch: current app is not system app, so return");
        return nullptr;
    }
    // The text about an undefined configuration is that of the modem log's switch, on purpose.
    auto context = ReadSwitchCall(
        env, info,
        {"HandleTcpdumpSwitch: Illegal params number", "HandleModemLogSwitch: config is undefined", nullptr});
    if (context == nullptr) {
        return nullptr;
    }
    return NapiUtil::StartCall(env, std::move(context), "HandleTcpdumpSwitch", NativeHandleTcpdumpSwitch,
                               HandleTcpdumpSwitchCallback);
}

void NativeHandleTcpdumpSwitch(napi_env, void* data)
{
    auto* context = ContextFrom<SwitchContext>(data);
    if (context == nullptr) {
        ZELK_ERROR("NativeHandleTcpdumpSwitch: data is null");
        return;
    }
    if (context->configs.empty()) {
        ZELK_INFO("[TCP dump] NativeHandleTcpdumpSwitch asyncContext configs is empty");
    }
    const auto client = DelayedSingleton<ZelkLogServiceClient>::GetInstance();
    context->errorCode = context->configs.empty()
                             ? client->HandleTcpdumpSwitch(context->switchStatus, context->result)
                             : client->HandleTcpdumpSwitch(context->switchStatus, context->configs, context->result);
    context->resolved = context->errorCode == 0;
}

void HandleTcpdumpSwitchCallback(napi_env env, napi_status, void* data)
{
    auto* context = ContextFrom<SwitchContext>(data);
    if (context == nullptr) {
        // The text of the modem log's switch, on purpose.
        ZELK_ERROR("HandleModemLogSwitchCallback: data is null");
        return;
    }
    if (!context->resolved) {
        // Not answered: the promise stays pending and the context is kept.
        ZELK_INFO("HandleTcpdumpSwitchCallback: errorcode %{public}d", context->errorCode);
        return;
    }
    NapiUtil::AnswerBoolean(env, context, context->result);
}

} // namespace OHOS::HiviewDFX
