// A layer between the module and Node-API, put there by the linker's --wrap: it counts the module's own calls and makes
// the planned ones fail without reaching the runtime.
#include <cstdlib>
#include <string>

#include "control.h"

namespace {

using ZelkTest::TheCounts;

// As on runtimes that overwrite the record with the next call: the message is good until then.
thread_local napi_extended_error_info g_injected = {};
thread_local bool g_isInjected = false;

bool Fails(const char* function, napi_status* status)
{
    g_injected.error_message = nullptr;
    g_isInjected = ZelkTest::TakeFault(function, status);
    if (g_isInjected) {
        g_injected.error_code = *status;
        g_injected.error_message = "injected failure";
    }
    return g_isInjected;
}

// The module's steps, run by way of a record of our own so that works in flight can be counted.
struct Work {
    napi_async_execute_callback execute;
    napi_async_complete_callback complete;
    void* data;
};

void Execute(napi_env env, void* data)
{
    auto* work = static_cast<Work*>(data);
    work->execute(env, work->data);
}

void Complete(napi_env env, napi_status status, void* data)
{
    const Work work = *static_cast<Work*>(data);
    delete static_cast<Work*>(data);
    TheCounts().inFlight--;
    work.complete(env, status, work.data);
}

} // namespace

#define WRAP(function, parameters, arguments)                                                                          \
    extern "C" napi_status __real_##function parameters;                                                               \
    extern "C" napi_status __wrap_##function parameters                                                                \
    {                                                                                                                  \
        napi_status status = napi_ok;                                                                                  \
        if (!Fails(#function, &status)) {                                                                              \
            status = __real_##function arguments;                                                                      \
        }                                                                                                              \
        return ZelkTest::Traced(#function, status);                                                                    \
    }

// The same, counting what succeeds.
#define WRAP_COUNTED(function, parameters, arguments, change)                                                          \
    extern "C" napi_status __real_##function parameters;                                                               \
    extern "C" napi_status __wrap_##function parameters                                                                \
    {                                                                                                                  \
        napi_status status = napi_ok;                                                                                  \
        if (!Fails(#function, &status)) {                                                                              \
            status = __real_##function arguments;                                                                      \
            if (status == napi_ok) {                                                                                   \
                TheCounts().change;                                                                                    \
            }                                                                                                          \
        }                                                                                                              \
        return ZelkTest::Traced(#function, status);                                                                    \
    }

WRAP(napi_call_function,
     (napi_env env, napi_value recv, napi_value func, size_t argc, const napi_value* argv, napi_value* result),
     (env, recv, func, argc, argv, result))
WRAP(napi_create_array, (napi_env env, napi_value* result), (env, result))
WRAP(napi_create_double, (napi_env env, double value, napi_value* result), (env, value, result))
WRAP(napi_create_int32, (napi_env env, int32_t value, napi_value* result), (env, value, result))
WRAP(napi_create_object, (napi_env env, napi_value* result), (env, result))
WRAP_COUNTED(napi_create_promise, (napi_env env, napi_deferred* deferred, napi_value* promise),
             (env, deferred, promise), deferreds++)
WRAP_COUNTED(napi_create_reference, (napi_env env, napi_value value, uint32_t count, napi_ref* result),
             (env, value, count, result), references++)
WRAP(napi_create_string_utf8, (napi_env env, const char* text, size_t length, napi_value* result),
     (env, text, length, result))
WRAP(napi_create_uint32, (napi_env env, uint32_t value, napi_value* result), (env, value, result))
WRAP(napi_define_properties, (napi_env env, napi_value object, size_t count, const napi_property_descriptor* list),
     (env, object, count, list))
WRAP_COUNTED(napi_delete_async_work, (napi_env env, napi_async_work work), (env, work), works--)
WRAP_COUNTED(napi_delete_reference, (napi_env env, napi_ref reference), (env, reference), references--)
WRAP(napi_get_array_length, (napi_env env, napi_value array, uint32_t* result), (env, array, result))
WRAP(napi_get_boolean, (napi_env env, bool value, napi_value* result), (env, value, result))
WRAP(napi_get_cb_info,
     (napi_env env, napi_callback_info info, size_t* argc, napi_value* argv, napi_value* self, void** data),
     (env, info, argc, argv, self, data))
WRAP(napi_get_element, (napi_env env, napi_value object, uint32_t index, napi_value* result),
     (env, object, index, result))
WRAP(napi_get_named_property, (napi_env env, napi_value object, const char* name, napi_value* result),
     (env, object, name, result))
WRAP(napi_get_null, (napi_env env, napi_value* result), (env, result))
WRAP(napi_get_property_names, (napi_env env, napi_value object, napi_value* result), (env, object, result))
WRAP(napi_get_reference_value, (napi_env env, napi_ref reference, napi_value* result), (env, reference, result))
WRAP(napi_get_undefined, (napi_env env, napi_value* result), (env, result))
WRAP(napi_get_value_bool, (napi_env env, napi_value value, bool* result), (env, value, result))
WRAP(napi_get_value_int32, (napi_env env, napi_value value, int32_t* result), (env, value, result))
WRAP(napi_get_value_int64, (napi_env env, napi_value value, int64_t* result), (env, value, result))
WRAP(napi_get_value_string_utf8, (napi_env env, napi_value value, char* buffer, size_t size, size_t* result),
     (env, value, buffer, size, result))
WRAP(napi_has_named_property, (napi_env env, napi_value object, const char* name, bool* result),
     (env, object, name, result))
WRAP(napi_is_array, (napi_env env, napi_value value, bool* result), (env, value, result))
WRAP(napi_is_exception_pending, (napi_env env, bool* result), (env, result))
WRAP(napi_open_handle_scope, (napi_env env, napi_handle_scope* result), (env, result))
WRAP_COUNTED(napi_queue_async_work, (napi_env env, napi_async_work work), (env, work), inFlight++)
WRAP_COUNTED(napi_reject_deferred, (napi_env env, napi_deferred deferred, napi_value value), (env, deferred, value),
             deferreds--)
WRAP_COUNTED(napi_resolve_deferred, (napi_env env, napi_deferred deferred, napi_value value), (env, deferred, value),
             deferreds--)
WRAP(napi_set_element, (napi_env env, napi_value object, uint32_t index, napi_value value), (env, object, index, value))
WRAP(napi_set_named_property, (napi_env env, napi_value object, const char* name, napi_value value),
     (env, object, name, value))
WRAP(napi_set_property, (napi_env env, napi_value object, napi_value key, napi_value value), (env, object, key, value))
WRAP(napi_throw_error, (napi_env env, const char* code, const char* message), (env, code, message))
WRAP(napi_typeof, (napi_env env, napi_value value, napi_valuetype* result), (env, value, result))

extern "C" napi_status __real_napi_get_last_error_info(napi_env env, const napi_extended_error_info** result);
extern "C" napi_status __wrap_napi_get_last_error_info(napi_env env, const napi_extended_error_info** result)
{
    napi_status status = napi_ok;
    const bool wasInjected = g_isInjected;
    if (!ZelkTest::TakeFault("napi_get_last_error_info", &status)) {
        if (wasInjected) {
            *result = &g_injected;
        } else {
            status = __real_napi_get_last_error_info(env, result);
        }
    }
    return ZelkTest::Traced("napi_get_last_error_info", status);
}

// Closes in any case: the runtime ends a process whose scopes are left open.
extern "C" napi_status __real_napi_close_handle_scope(napi_env env, napi_handle_scope scope);
extern "C" napi_status __wrap_napi_close_handle_scope(napi_env env, napi_handle_scope scope)
{
    napi_status status = __real_napi_close_handle_scope(env, scope);
    Fails("napi_close_handle_scope", &status);
    return ZelkTest::Traced("napi_close_handle_scope", status);
}

extern "C" napi_status __real_napi_create_async_work(napi_env env, napi_value resource, napi_value name,
                                                     napi_async_execute_callback execute,
                                                     napi_async_complete_callback complete, void* data,
                                                     napi_async_work* result);
extern "C" napi_status __wrap_napi_create_async_work(napi_env env, napi_value resource, napi_value name,
                                                     napi_async_execute_callback execute,
                                                     napi_async_complete_callback complete, void* data,
                                                     napi_async_work* result)
{
    napi_status status = napi_ok;
    if (Fails("napi_create_async_work", &status)) {
        return ZelkTest::Traced("napi_create_async_work", status);
    }
    auto* work = new Work{execute, complete, data};
    status = __real_napi_create_async_work(env, resource, name, Execute, Complete, work, result);
    if (status == napi_ok) {
        TheCounts().works++;
    }
    return ZelkTest::Traced("napi_create_async_work", status);
}

// BaseContext's allocation functions, to count the records alive.
extern "C" void* __real__ZN4OHOS9HiviewDFX11BaseContextnwEm(size_t size);
extern "C" void* __wrap__ZN4OHOS9HiviewDFX11BaseContextnwEm(size_t size)
{
    TheCounts().records++;
    return __real__ZN4OHOS9HiviewDFX11BaseContextnwEm(size);
}

extern "C" void __real__ZN4OHOS9HiviewDFX11BaseContextdlEPv(void* storage);
extern "C" void __wrap__ZN4OHOS9HiviewDFX11BaseContextdlEPv(void* storage)
{
    TheCounts().records--;
    __real__ZN4OHOS9HiviewDFX11BaseContextdlEPv(storage);
}
