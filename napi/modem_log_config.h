// getModemLogConfig(keys[, callback]): the modem log's configuration items for a list of keys.
#ifndef ZELKLOGSERVICE_NAPI_MODEM_LOG_CONFIG_H
#define ZELKLOGSERVICE_NAPI_MODEM_LOG_CONFIG_H

#include "napi/native_api.h"

namespace OHOS::HiviewDFX {

napi_value GetModemLogConfig(napi_env env, napi_callback_info info);
void NativeGetModemLogConfig(napi_env env, void* data);
void GetModemLogConfigCallback(napi_env env, napi_status status, void* data);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_MODEM_LOG_CONFIG_H
