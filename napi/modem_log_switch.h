// handleModemLogSwitch(state[, callback][, configs]): turns the modem log on or off.
#ifndef ZELKLOGSERVICE_NAPI_MODEM_LOG_SWITCH_H
#define ZELKLOGSERVICE_NAPI_MODEM_LOG_SWITCH_H

#include "napi/native_api.h"

namespace OHOS::HiviewDFX {

napi_value HandleModemLogSwitch(napi_env env, napi_callback_info info);
void NativeHandleModemLogSwitch(napi_env env, void* data);
void HandleModemLogSwitchCallback(napi_env env, napi_status status, void* data);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_MODEM_LOG_SWITCH_H
