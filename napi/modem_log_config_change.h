// changeModemLogConfig(configs[, callback]): applies configuration items to the modem log.
#ifndef ZELKLOGSERVICE_NAPI_MODEM_LOG_CONFIG_CHANGE_H
#define ZELKLOGSERVICE_NAPI_MODEM_LOG_CONFIG_CHANGE_H

#include "napi/native_api.h"

namespace OHOS::HiviewDFX {

napi_value ChangeModemLogConfig(napi_env env, napi_callback_info info);
void NativeChangeModemLogConfig(napi_env env, void* data);
void ChangeModemLogConfigCallback(napi_env env, napi_status status, void* data);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_MODEM_LOG_CONFIG_CHANGE_H
