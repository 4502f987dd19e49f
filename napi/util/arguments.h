// Reading and checking the arguments of a JavaScript call.
#ifndef ZELKLOGSERVICE_NAPI_UTIL_ARGUMENTS_H
#define ZELKLOGSERVICE_NAPI_UTIL_ARGUMENTS_H

#include <array>
#include <cstddef>
#include <initializer_list>

#include "napi/native_api.h"
#include "napi/util/base_context.h"
#include "napi/util/checked_call.h"

namespace OHOS::HiviewDFX {

// Up to N arguments of a call. `count` is the number that JavaScript passed, which may be larger than N. Slots past it
// are null on every runtime, even on those that write `undefined` there.
template <size_t N>
struct Arguments {
    size_t count = 0;
    std::array<napi_value, N> values = {};

    napi_value operator[](size_t index) const
    {
        return values[index];
    }
};

// False when the arguments cannot be read; the failure has been thrown.
template <size_t N>
bool ReadArguments(napi_env env, napi_callback_info info, Arguments<N>& arguments)
{
    arguments.count = N;
    if (!CheckCall(env, napi_get_cb_info(env, info, &arguments.count, arguments.values.data(), nullptr, nullptr))) {
        return false;
    }
    for (size_t index = arguments.count; index < N; ++index) {
        arguments.values[index] = nullptr;
    }
    return true;
}

// Whether argv[i] is of the i-th type for every type of the list. The first mismatch is logged; a missing argument is a
// mismatch, and throws. An empty list matches and is logged too. `argv` has a slot for every type.
bool MatchParameters(napi_env env, const napi_value argv[], std::initializer_list<napi_valuetype> types);

// Reads (object) or (object, any). False when the first argument is not an object, which is logged with
// `illegalParams`, or when a Node-API call fails, as with a missing first argument, which is thrown.
bool ReadObjectArguments(napi_env env, napi_callback_info info, const char* illegalParams, Arguments<2>& arguments);

// The type of `value`. False when it cannot be read, as with a missing argument, which is thrown.
bool ReadType(napi_env env, napi_value value, napi_valuetype& type);

// Makes `value` the call's callback, whatever its type. False when that fails, which has been thrown.
bool KeepCallback(napi_env env, napi_value value, BaseContext& context);

// Makes `value` the call's callback when it is a function; any other value is ignored. False when a Node-API call
// fails, which has been thrown.
bool KeepCallbackIfFunction(napi_env env, napi_value value, BaseContext& context);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_UTIL_ARGUMENTS_H
