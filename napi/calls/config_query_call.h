// What the functions that read a configuration have in common: their context, their arguments and their answer.
#ifndef ZELKLOGSERVICE_NAPI_CALLS_CONFIG_QUERY_CALL_H
#define ZELKLOGSERVICE_NAPI_CALLS_CONFIG_QUERY_CALL_H

#include <memory>
#include <string>
#include <vector>

#include "napi/util/base_context.h"

namespace OHOS::HiviewDFX {

struct GetConfigContext : BaseContext {
    std::vector<std::string> configKeys;
    std::vector<std::string> callbackConfigs; // The service's answer: one JSON text per item.
};

// The log lines in which the query functions differ.
struct ConfigQueryTexts {
    const char* illegalParams;
    const char* errorType;
    const char* onlyOneParam;
    const char* illegalCount;
};

// Reads (keys) or (keys, callback): `keys` is an array, a second argument that is not a function is ignored. Null when
// the call is refused, which is logged, or when a Node-API call fails, as with a missing first argument, which is
// thrown.
std::unique_ptr<GetConfigContext> ReadConfigQueryCall(napi_env env, napi_callback_info info,
                                                      const ConfigQueryTexts& texts);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_CALLS_CONFIG_QUERY_CALL_H
