// The steps that the JavaScript functions share: the async frame and the access to JavaScript values.
#ifndef ZELKLOGSERVICE_NAPI_UTIL_NAPI_UTIL_H
#define ZELKLOGSERVICE_NAPI_UTIL_NAPI_UTIL_H

#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "napi/native_api.h"
#include "napi/util/base_context.h"

namespace OHOS::HiviewDFX {

// The longest string, in UTF-8 bytes without the terminator, that NapiUtil::GetString accepts.
constexpr uint32_t MAX_STRING_LENGTH = 8194;

// All functions run on the JavaScript thread of `env`. The one exception is ThrowError, which two execute steps call on
// a worker when they get no context. "Throws" means a JavaScript exception made by CheckCall (see checked_call.h) for a
// Node-API call that failed. The only C++ exception is std::bad_alloc.
class NapiUtil {
public:
    // ---- The async frame (async_frame.cpp) ----

    // Whether the calling process is a system application. Asked anew on every call.
    static bool IsSystemAppCall();

    // `undefined`; null after a failure, which has been thrown.
    static napi_value CreateUndefined(napi_env env);

    // Throws an Error whose `code` is the decimal text of `code`. A throw that fails is logged.
    static void ThrowError(napi_env env, int32_t code, const std::string& msg);

    // Starts the call: makes the promise (unless `context` has a callback reference) and queues `execute` on the worker
    // pool, to be followed by `complete` on this thread, both with `context` as their data. Returns what the JavaScript
    // function returns to its caller: the promise, `undefined` in callback mode, null after a failure and for a null
    // context, which is logged.
    //
    // Takes ownership of `context`, which was made with `new`. Afterwards:
    // - queued: it lives until Handle2ValueCallback;
    // - a Node-API call fails before the queue call: thrown; the callback reference and the context are released;
    // - the queue call fails: an Error "error at napi_queue_async_work" with the status as code is thrown; the context,
    //   its work and its callback reference or deferred stay allocated, and the promise, which never settles, or
    //   `undefined` is returned all the same;
    // - that throw fails too: the reference and the context are released, the work stays allocated.
    // A promise that was made before a later call failed is unreachable for JavaScript; its deferred stays allocated.
    //
    // Only the storage of a derived context is released; what its members own is leaked: use StartCall.
    static napi_value HandleAsyncWork(napi_env env, BaseContext* context, const std::string& workName,
                                      napi_async_execute_callback execute, napi_async_complete_callback complete);

    // HandleAsyncWork for a derived context, whose members are released with it.
    template <typename Context>
    static napi_value StartCall(napi_env env, std::unique_ptr<Context> context, const std::string& workName,
                                napi_async_execute_callback execute, napi_async_complete_callback complete)
    {
        napi_value result = nullptr;
        if (StartAsyncWork(env, context.get(), workName, execute, complete, &result)) {
            static_cast<void>(context.release());
        }
        return result;
    }

    // Ends the call: hands `value` to the callback as its only argument, or resolves the promise with it, or rejects
    // the promise with it when the context is not `resolved`; then frees the work, the callback reference and the
    // context's storage. A delivery that fails (the callback throws or is not a function) is thrown and frees nothing.
    static void Handle2ValueCallback(napi_env env, BaseContext* context, napi_value value);

    // Ends the call of a derived context: destroys what its members own, which the frame does not know, and leaves the
    // bare base to Handle2ValueCallback.
    template <typename Context>
    static void Answer(napi_env env, Context* context, napi_value value)
    {
        const BaseContext base = static_cast<const BaseContext&>(*context);
        context->~Context();
        Handle2ValueCallback(env, ::new (static_cast<void*>(context)) BaseContext(base), value);
    }

    // The same with a boolean.
    template <typename Context>
    static void AnswerBoolean(napi_env env, Context* context, bool value)
    {
        napi_value boolean = nullptr;
        napi_get_boolean(env, value, &boolean);
        Answer(env, context, boolean);
    }

    // ---- Access to JavaScript values (value_access.cpp) ----
    //
    // A Node-API call that fails becomes a log line and the fallback named here, so that callers need not check
    // anything. An exception that the caller's own getter or proxy threw stays pending and reaches the caller.

    // True when the type is exactly `expected`. Throws, and returns false, when the type cannot be read, as with a null
    // value.
    static bool MatchValueType(napi_env env, napi_value value, napi_valuetype expected);
    // Fallback: napi_undefined.
    static napi_valuetype GetType(napi_env env, napi_value value);
    // Also true when the type cannot be read.
    static bool IsUndefined(napi_env env, napi_value value);
    // Fallback: false.
    static bool IsArray(napi_env env, napi_value value);
    // Fallback: false.
    static bool GetBool(napi_env env, napi_value value);
    // Converted as Node-API does. Fallback: 0.
    static int32_t GetInt32(napi_env env, napi_value value);
    static int64_t GetInt64(napi_env env, napi_value value);
    // A string of 1 to MAX_STRING_LENGTH bytes, up to its first NUL. Fallback, which "" and longer strings get too: "".
    static std::string GetString(napi_env env, napi_value value);
    // A JavaScript string of all bytes of `text`. Throws, and returns null, when it cannot be made.
    static napi_value CreateStringValue(napi_env env, const std::string& text);

    // The named property, `undefined` when the object lacks it. Null when it cannot be read.
    static napi_value GetProperty(napi_env env, napi_value object, const std::string& name);
    // Appends the names of the object's own properties, on Node.js the enumerable ones, in the runtime's order; a name
    // that GetString refuses becomes "".
    static void GetPropertyNames(napi_env env, napi_value object, std::vector<std::string>& names);
    // Throws when the string cannot be made or set.
    static void SetPropertyStringUtf8(napi_env env, napi_value object, const std::string& name,
                                      const std::string& value);

    // Fallback: 0.
    static uint32_t GetArrayLength(napi_env env, napi_value array);
    // Null when it cannot be read.
    static napi_value GetElement(napi_env env, napi_value array, uint32_t index);
    // The type that all elements share. napi_null for an empty array, to distinguish it from an unusable one;
    // napi_undefined for elements of different types and for an array that cannot be read.
    static napi_valuetype GetArrayType(napi_env env, napi_value array);
    // Each appends one entry per element that can be fetched: the scalar's fallback if it cannot be converted.
    static void GetBooleans(napi_env env, napi_value array, std::vector<bool>& out);
    static void GetInt32s(napi_env env, napi_value array, std::vector<int>& out);
    // Reads every element with GetString, and logs as it does, but into its own copy of `out`: the caller's vector does
    // not change. `maximumLength` is not read.
    static void GetStrings(napi_env env, napi_value array, std::vector<std::string> out, uint32_t maximumLength);

private:
    // False when the call cannot start, and `context` is still the caller's.
    static bool StartAsyncWork(napi_env env, BaseContext* context, const std::string& workName,
                               napi_async_execute_callback execute, napi_async_complete_callback complete,
                               napi_value* result);
};

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_UTIL_NAPI_UTIL_H
