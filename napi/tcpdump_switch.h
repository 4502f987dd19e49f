// handleTcpdumpSwitch(state[, callback][, configs]): starts or stops network packet capture.
#ifndef ZELKLOGSERVICE_NAPI_TCPDUMP_SWITCH_H
#define ZELKLOGSERVICE_NAPI_TCPDUMP_SWITCH_H

#include "napi/native_api.h"

namespace OHOS::HiviewDFX {

napi_value HandleTcpdumpSwitch(napi_env env, napi_callback_info info);
void NativeHandleTcpdumpSwitch(napi_env env, void* data);
void HandleTcpdumpSwitchCallback(napi_env env, napi_status status, void* data);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_TCPDUMP_SWITCH_H
