// handleBluetoothCallPcmLogSwitch(state[, callback][, configs]): turns the Bluetooth call PCM log on or off.
#ifndef ZELKLOGSERVICE_NAPI_BLUETOOTH_CALL_PCM_LOG_SWITCH_H
#define ZELKLOGSERVICE_NAPI_BLUETOOTH_CALL_PCM_LOG_SWITCH_H

#include "napi/native_api.h"

namespace OHOS::HiviewDFX {

napi_value HandleBluetoothCallPcmLogSwitch(napi_env env, napi_callback_info info);
void NativeHandleBluetoothCallPcmLogSwitch(napi_env env, void* data);
void HandleBluetoothCallPcmLogSwitchCallback(napi_env env, napi_status status, void* data);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_BLUETOOTH_CALL_PCM_LOG_SWITCH_H
