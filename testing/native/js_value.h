// The JavaScript form of the values in requests and answers, and the arguments of the functions that take them.
#ifndef TESTING_NATIVE_JS_VALUE_H
#define TESTING_NATIVE_JS_VALUE_H

#include <array>
#include <cstddef>
#include <string>

#include <node_api.h>

#include "service/api/operations.h"

namespace OHOS::Host {

// A boolean, a bigint, a string, an array of strings, or undefined; null when the runtime refuses.
napi_value ToJs(napi_env env, const Value& value);
napi_value ToJs(napi_env env, const std::string& text);

// From a boolean, a bigint, a string, a Uint8Array, or an array of the latter two; nothing for anything else. A string
// is read as UTF-8, a Uint8Array byte for byte.
Value FromJs(napi_env env, napi_value value);

// The arguments of a call; undefined where there are fewer.
template <size_t COUNT>
std::array<napi_value, COUNT> ReadArguments(napi_env env, napi_callback_info info)
{
    std::array<napi_value, COUNT> arguments{};
    size_t count = COUNT;
    napi_get_cb_info(env, info, &count, arguments.data(), nullptr, nullptr);
    return arguments;
}

} // namespace OHOS::Host

#endif // TESTING_NATIVE_JS_VALUE_H
