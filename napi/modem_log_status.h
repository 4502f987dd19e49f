// getModemLogStatus([callback]): whether the modem log is on.
#ifndef ZELKLOGSERVICE_NAPI_MODEM_LOG_STATUS_H
#define ZELKLOGSERVICE_NAPI_MODEM_LOG_STATUS_H

#include "napi/util/base_context.h"

namespace OHOS::HiviewDFX {

struct GetModemLogStatusContext : BaseContext {
    bool status = false; // Written by the service.
};

napi_value GetModemLogStatus(napi_env env, napi_callback_info info);
void NativeGetModemLogStatus(napi_env env, void* data);
void GetModemLogStatusCallback(napi_env env, napi_status status, void* data);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_MODEM_LOG_STATUS_H
