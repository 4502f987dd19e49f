// getModemLogDirectPackConfig([callback]): the direct-pack configuration. Not supported at present: see
// unsupported_query_call.h.
#ifndef ZELKLOGSERVICE_NAPI_MODEM_LOG_DIRECT_PACK_CONFIG_H
#define ZELKLOGSERVICE_NAPI_MODEM_LOG_DIRECT_PACK_CONFIG_H

#include <string>

#include "napi/util/base_context.h"

namespace OHOS::HiviewDFX {

struct DirectPackConfigContext : BaseContext {
    std::string directPackConfig; // The service's answer.
};

napi_value GetModemLogDirectPackConfig(napi_env env, napi_callback_info info);
void NativeGetModemLogDirectPackConfig(napi_env env, void* data);
void GetModemLogDirectPackConfigCallback(napi_env env, napi_status status, void* data);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_MODEM_LOG_DIRECT_PACK_CONFIG_H
