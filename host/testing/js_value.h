// The values in requests and answers, and their JavaScript form.
#ifndef HOST_TESTING_JS_VALUE_H
#define HOST_TESTING_JS_VALUE_H

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include <node_api.h>

namespace OHOS::Host {

using Value = std::variant<std::monostate, bool, int64_t, std::string, std::vector<std::string>>;

// A boolean, a bigint, a string, an array of strings, or undefined; null when the runtime refuses.
napi_value ToJs(napi_env env, const Value& value);
napi_value ToJs(napi_env env, const std::string& text);

// From a boolean, a string, a Uint8Array, or an array of the latter two; nothing for anything else. A string is read as
// UTF-8, a Uint8Array byte for byte.
Value FromJs(napi_env env, napi_value value);

} // namespace OHOS::Host

#endif // HOST_TESTING_JS_VALUE_H
