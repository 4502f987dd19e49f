// The JavaScript form of the values in requests and answers.
#ifndef TESTING_NATIVE_JS_VALUE_H
#define TESTING_NATIVE_JS_VALUE_H

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

} // namespace OHOS::Host

#endif // TESTING_NATIVE_JS_VALUE_H
