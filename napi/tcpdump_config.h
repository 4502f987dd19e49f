// getTcpdumpConfig(keys[, callback]): the capture's configuration items for a list of keys.
#ifndef ZELKLOGSERVICE_NAPI_TCPDUMP_CONFIG_H
#define ZELKLOGSERVICE_NAPI_TCPDUMP_CONFIG_H

#include "napi/native_api.h"

namespace OHOS::HiviewDFX {

napi_value GetTcpdumpConfig(napi_env env, napi_callback_info info);
void NativeGetTcpdumpConfig(napi_env env, void* data);
void GetTcpdumpConfigCallback(napi_env env, napi_status status, void* data);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_TCPDUMP_CONFIG_H
