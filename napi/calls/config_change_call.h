// What the functions that change a configuration have in common: their context and their arguments.
#ifndef ZELKLOGSERVICE_NAPI_CALLS_CONFIG_CHANGE_CALL_H
#define ZELKLOGSERVICE_NAPI_CALLS_CONFIG_CHANGE_CALL_H

#include <memory>
#include <vector>

#include "config/config_info.h"
#include "napi/util/base_context.h"

namespace OHOS::HiviewDFX {

struct ChangeConfigContext : BaseContext {
    std::vector<std::shared_ptr<ConfigInfo>> configs;
    bool result = false; // The service's answer.
};

// The log lines in which the change functions differ.
struct ConfigChangeTexts {
    const char* illegalParams;
    const char* errorObjectType;
    const char* errorArrayType;
};

// Reads (configs) or (configs, callback): `configs` is an array. The callback is used only when there are exactly two
// arguments and it is a function. Null when the call is refused, which is logged, or when a Node-API call fails, as
// with a missing first argument, which is thrown.
std::unique_ptr<ChangeConfigContext> ReadConfigChangeCall(napi_env env, napi_callback_info info,
                                                          const ConfigChangeTexts& texts);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_CALLS_CONFIG_CHANGE_CALL_H
