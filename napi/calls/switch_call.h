// What the functions that switch a log on and off have in common: their context and their arguments.
#ifndef ZELKLOGSERVICE_NAPI_CALLS_SWITCH_CALL_H
#define ZELKLOGSERVICE_NAPI_CALLS_SWITCH_CALL_H

#include <memory>
#include <vector>

#include "config/config_info.h"
#include "napi/util/base_context.h"

namespace OHOS::HiviewDFX {

struct SwitchContext : BaseContext {
    bool switchStatus = false;                        // Requested: true is on.
    std::vector<std::shared_ptr<ConfigInfo>> configs; // To be applied with the switch.
    bool result = false;                              // The service's answer.
};

// The log lines in which the switch functions differ.
struct SwitchTexts {
    const char* illegalCount;
    const char* configUndefined;
    void (*logSwitchStatus)(bool); // Null for a function that does not log the state.
};

// Reads (state), (state, configs), (state, callback) or (state, callback, configs). Only `true` means on. With two
// arguments the second is the callback unless it is an array or undefined; the type of a callback is not checked, and a
// third argument that is not an array is ignored. Null when the call is refused (four or more arguments, logged) or a
// Node-API call fails, as with a missing state (thrown).
std::unique_ptr<SwitchContext> ReadSwitchCall(napi_env env, napi_callback_info info, const SwitchTexts& texts);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_CALLS_SWITCH_CALL_H
