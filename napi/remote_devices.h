// The functions about remote devices. They serve every caller, not system applications only, and answer by promise:
// resolved with the service's reply text, or rejected with whatever reply it gave. Their steps are NapiExecutor's.
#ifndef ZELKLOGSERVICE_NAPI_REMOTE_DEVICES_H
#define ZELKLOGSERVICE_NAPI_REMOTE_DEVICES_H

#include "napi/native_api.h"

namespace OHOS::HiviewDFX {

// fetchRemoteDevicesLogs(request, number): exactly two arguments.
napi_value FetchRemoteDevicesLogs(napi_env env, napi_callback_info info);
// queryRemoteDevicesLogs(request): exactly one argument.
napi_value QueryRemoteDevicesLogs(napi_env env, napi_callback_info info);
// getRemoteDevicesList(): arguments are not read.
napi_value GetRemoteDevicesList(napi_env env, napi_callback_info info);
// queryProtocolData(request): exactly one argument.
napi_value QueryProtocolData(napi_env env, napi_callback_info info);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_REMOTE_DEVICES_H
