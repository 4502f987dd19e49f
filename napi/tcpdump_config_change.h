// changeTcpdumpConfig(configs[, callback]): applies configuration items to network packet capture.
#ifndef ZELKLOGSERVICE_NAPI_TCPDUMP_CONFIG_CHANGE_H
#define ZELKLOGSERVICE_NAPI_TCPDUMP_CONFIG_CHANGE_H

#include "napi/native_api.h"

namespace OHOS::HiviewDFX {

napi_value ChangeTcpdumpConfig(napi_env env, napi_callback_info info);
void NativeChangeTcpdumpConfig(napi_env env, void* data);
void ChangeTcpdumpConfigCallback(napi_env env, napi_status status, void* data);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_TCPDUMP_CONFIG_CHANGE_H
