#include <utility>

#include "client/zelk_log_service_client.h"
#include "common/module_log.h"
#include "napi/calls/switch_call.h"
#include "napi/functions.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

napi_value HandleModemLogSwitch(napi_env env, napi_callback_info info)
{
    if (!NapiUtil::IsSystemAppCall()) {
        ZELK_ERROR("HandleModemLogSwitch: current app is not system app, so return");
        return nullptr;
    }
    // The state is logged at ERROR level, although nothing is wrong.
    auto context = ReadSwitchCall(
        env, info,
        {"HandleModemLogSwitch: Illegal params number", "HandleModemLogSwitch: config is undefined", [](bool status) {
             ZELK_ERROR("HandleModemLogSwitch: switchStatus, %{public}d", status);
         }});
    if (context == nullptr) {
        return nullptr;
    }
    return NapiUtil::StartCall(env, std::move(context), "HandleModemLogSwitch", NativeHandleModemLogSwitch,
                               HandleModemLogSwitchCallback);
}

void NativeHandleModemLogSwitch(napi_env, void* data)
{
    auto* context = ContextFrom<SwitchContext>(data);
    if (context == nullptr) {
        ZELK_ERROR("NativeHandleModemLogSwitch: data is null");
        return;
    }
    const auto client = DelayedSingleton<ZelkLogServiceClient>::GetInstance();
    if (context->configs.empty()) {
        ZELK_INFO("NativeHandleModemLogSwitch asyncContext configs is empty");
        context->errorCode = client->HandleModemLogSwitch(context->switchStatus, context->result);
    } else {
        context->errorCode = client->HandleModemLogSwitch(context->switchStatus, context->configs, context->result);
    }
    context->resolved = context->errorCode == 0;
}

void HandleModemLogSwitchCallback(napi_env env, napi_status, void* data)
{
    auto* context = ContextFrom<SwitchContext>(data);
    if (context == nullptr) {
        ZELK_ERROR("HandleModemLogSwitchCallback: data is null");
        return;
    }
    if (!context->resolved) {
        // The result is delivered all the same, as the value of the rejection.
        ZELK_ERROR("[HandleModemLogSwitchCallback] !asyncContext->resolved");
    }
    NapiUtil::AnswerBoolean(env, context, context->result);
}

} // namespace OHOS::HiviewDFX
