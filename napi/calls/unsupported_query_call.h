// The start of the queries that are not supported at present: they throw, and make their request all the same.
#ifndef ZELKLOGSERVICE_NAPI_CALLS_UNSUPPORTED_QUERY_CALL_H
#define ZELKLOGSERVICE_NAPI_CALLS_UNSUPPORTED_QUERY_CALL_H

#include <cstdint>
#include <memory>

#include "napi/util/arguments.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

constexpr int32_t FUNCTION_NOT_SUPPORTED = 6;

// Throws `message` with the code for an unsupported function and goes on while that error, which the JavaScript caller
// gets, is pending. Then reads ([callback]); the callback is used only when it is a function and the only argument.
// Null when a Node-API call fails.
template <typename Context>
std::unique_ptr<Context> ReadUnsupportedQueryCall(napi_env env, napi_callback_info info, const char* message)
{
    NapiUtil::ThrowError(env, FUNCTION_NOT_SUPPORTED, message);
    Arguments<1> arguments;
    if (!ReadArguments(env, info, arguments)) {
        return nullptr;
    }
    // Never stops the call, because the empty list matches anything. A mismatch with the first list is logged.
    const napi_value* argv = arguments.values.data();
    if (!MatchParameters(env, argv, {napi_function})) {
        MatchParameters(env, argv, {});
    }
    auto context = std::make_unique<Context>();
    if (arguments.count == 1 && !KeepCallbackIfFunction(env, arguments[0], *context)) {
        return nullptr;
    }
    return context;
}

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_CALLS_UNSUPPORTED_QUERY_CALL_H
