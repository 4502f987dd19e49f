// getTcpdumpStatus([callback]): whether network packet capture is running.
#ifndef ZELKLOGSERVICE_NAPI_TCPDUMP_STATUS_H
#define ZELKLOGSERVICE_NAPI_TCPDUMP_STATUS_H

#include "napi/native_api.h"

namespace OHOS::HiviewDFX {

napi_value GetTcpdumpStatus(napi_env env, napi_callback_info info);
void NativeGetTcpdumpStatus(napi_env env, void* data);
void GetTcpdumpStatusCallback(napi_env env, napi_status status, void* data);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_TCPDUMP_STATUS_H
