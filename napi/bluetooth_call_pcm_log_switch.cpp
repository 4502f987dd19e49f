#include <utility>

#include "client/zelk_log_service_client.h"
#include "common/module_log.h"
#include "napi/calls/switch_call.h"
#include "napi/functions.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

napi_value HandleBluetoothCallPcmLogSwitch(napi_env env, napi_callback_info info)
{
    if (!NapiUtil::IsSystemAppCall()) {
        ZELK_ERROR("HandleBluetoothCallPcmLogSwitch: current app is not system app, so return");
        return nullptr;
    }
    auto context = ReadSwitchCall(env, info,
                                  {"HandleBluetoothCallPcmLogSwitch: Illegal params number",
                                   "HandleBluetoothCallPcmLogSwitch: config is undefined", nullptr});
    if (context == nullptr) {
        return nullptr;
    }
    return NapiUtil::StartCall(env, std::move(context), "HandleBluetoothCallPcmLogSwitch",
                               NativeHandleBluetoothCallPcmLogSwitch, HandleBluetoothCallPcmLogSwitchCallback);
}

void NativeHandleBluetoothCallPcmLogSwitch(napi_env, void* data)
{
    auto* context = ContextFrom<SwitchContext>(data);
    if (context == nullptr) {
        ZELK_ERROR("NativeHandleBluetoothCallPcmLogSwitch: data is null");
        return;
    }
    // The service takes no items with this switch and answers with its code alone.
    const auto client = DelayedSingleton<ZelkLogServiceClient>::GetInstance();
    context->errorCode = client->HandleBluetoothCallPcmLogSwitch(context->switchStatus);
    context->resolved = context->errorCode == 0;
}

void HandleBluetoothCallPcmLogSwitchCallback(napi_env env, napi_status, void* data)
{
    auto* context = ContextFrom<SwitchContext>(data);
    if (context == nullptr) {
        ZELK_ERROR("HandleBluetoothCallPcmLogSwitchCallback: data is null");
        return;
    }
    if (!context->resolved) {
        // Not answered: the promise stays pending and the context is kept.
        ZELK_INFO("HandleBluetoothCallPcmLogSwitchCallback: errorcode %{public}d", context->errorCode);
        return;
    }
    // Never written for this switch: success answers false.
    NapiUtil::AnswerBoolean(env, context, context->result);
}

} // namespace OHOS::HiviewDFX
