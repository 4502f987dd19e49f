// getModemLogLogMasks([callback]): the modem log's masks. Not supported at present: see unsupported_query_call.h.
#ifndef ZELKLOGSERVICE_NAPI_MODEM_LOG_LOG_MASKS_H
#define ZELKLOGSERVICE_NAPI_MODEM_LOG_LOG_MASKS_H

#include <string>
#include <vector>

#include "napi/util/base_context.h"

namespace OHOS::HiviewDFX {

struct LogMasksContext : BaseContext {
    std::vector<std::string> logMasks; // The service's answer: one JSON text per mask.
};

napi_value GetModemLogLogMasks(napi_env env, napi_callback_info info);
void NativeGetModemLogLogMasks(napi_env env, void* data);
void GetModemLogLogMasksCallback(napi_env env, napi_status status, void* data);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_MODEM_LOG_LOG_MASKS_H
