// A layer between the module and Node-API, put there by the linker's --wrap: it counts the module's own calls and makes
// the planned ones fail without reaching the runtime.
#include "control.h"

namespace {

using ZelkTest::Counts;
using ZelkTest::TheCounts;

// As on runtimes that overwrite the record with the next call: the message is good until then.
thread_local napi_extended_error_info g_injected = {};
thread_local bool g_isInjected = false;

bool Fails(const char* function, napi_status* status)
{
    g_isInjected = ZelkTest::TakeFault(function, status);
    g_injected.error_code = *status;
    g_injected.error_message = g_isInjected ? "injected failure" : nullptr;
    return g_isInjected;
}

// Makes the call unless it is to fail, and changes a count when it succeeds.
template <typename Real>
napi_status Call(const char* function, Real real, std::atomic<int> Counts::*count, int change)
{
    napi_status status = napi_ok;
    if (!Fails(function, &status)) {
        status = real();
        if (status == napi_ok && count != nullptr) {
            TheCounts().*count += change;
        }
    }
    return ZelkTest::Traced(function, status);
}

// clang-format off
// The module's steps, run by way of a record of our own so that works in flight can be counted.
struct Work { napi_async_execute_callback execute; napi_async_complete_callback complete; void* data; };

void Execute(napi_env env, void* data) { static_cast<Work*>(data)->execute(env, static_cast<Work*>(data)->data); }

void Complete(napi_env env, napi_status status, void* data)
{
    const Work work = *static_cast<Work*>(data);
    delete static_cast<Work*>(data);
    TheCounts().inFlight--;
    work.complete(env, status, work.data);
}

using Env = napi_env;
using Value = napi_value;

} // namespace

#define WRAP_COUNTED(function, parameters, arguments, count, change)                                                   \
    extern "C" napi_status __real_##function parameters;                                                               \
    extern "C" napi_status __wrap_##function parameters                                                                \
    { return Call(#function, [&] { return __real_##function arguments; }, count, change); }
#define WRAP(function, parameters, arguments) WRAP_COUNTED(function, parameters, arguments, nullptr, 0)

WRAP(napi_call_function, (Env e, Value a, Value b, size_t c, const Value* d, Value* r), (e, a, b, c, d, r))
WRAP_COUNTED(napi_create_async_work, (Env e, Value a, Value b, napi_async_execute_callback c,
    napi_async_complete_callback d, void* f, napi_async_work* r),
    (e, a, b, Execute, Complete, new Work{c, d, f}, r), &Counts::works, 1)
WRAP(napi_create_array, (Env e, Value* r), (e, r))
WRAP(napi_create_double, (Env e, double a, Value* r), (e, a, r))
WRAP(napi_create_int32, (Env e, int32_t a, Value* r), (e, a, r))
WRAP(napi_create_object, (Env e, Value* r), (e, r))
WRAP_COUNTED(napi_create_promise, (Env e, napi_deferred* a, Value* r), (e, a, r), &Counts::deferreds, 1)
WRAP_COUNTED(napi_create_reference, (Env e, Value a, uint32_t b, napi_ref* r), (e, a, b, r), &Counts::references, 1)
WRAP(napi_create_string_utf8, (Env e, const char* a, size_t b, Value* r), (e, a, b, r))
WRAP(napi_create_uint32, (Env e, uint32_t a, Value* r), (e, a, r))
WRAP(napi_define_properties, (Env e, Value a, size_t b, const napi_property_descriptor* c), (e, a, b, c))
WRAP_COUNTED(napi_delete_async_work, (Env e, napi_async_work a), (e, a), &Counts::works, -1)
WRAP_COUNTED(napi_delete_reference, (Env e, napi_ref a), (e, a), &Counts::references, -1)
WRAP(napi_get_array_length, (Env e, Value a, uint32_t* r), (e, a, r))
WRAP(napi_get_boolean, (Env e, bool a, Value* r), (e, a, r))
WRAP(napi_get_cb_info, (Env e, napi_callback_info a, size_t* b, Value* c, Value* d, void** f), (e, a, b, c, d, f))
WRAP(napi_get_element, (Env e, Value a, uint32_t b, Value* r), (e, a, b, r))
WRAP(napi_get_named_property, (Env e, Value a, const char* b, Value* r), (e, a, b, r))
WRAP(napi_get_null, (Env e, Value* r), (e, r))
WRAP(napi_get_property_names, (Env e, Value a, Value* r), (e, a, r))
WRAP(napi_get_reference_value, (Env e, napi_ref a, Value* r), (e, a, r))
WRAP(napi_get_undefined, (Env e, Value* r), (e, r))
WRAP(napi_get_value_bool, (Env e, Value a, bool* r), (e, a, r))
WRAP(napi_get_value_int32, (Env e, Value a, int32_t* r), (e, a, r))
WRAP(napi_get_value_int64, (Env e, Value a, int64_t* r), (e, a, r))
WRAP(napi_get_value_string_utf8, (Env e, Value a, char* b, size_t c, size_t* r), (e, a, b, c, r))
WRAP(napi_has_named_property, (Env e, Value a, const char* b, bool* r), (e, a, b, r))
WRAP(napi_is_array, (Env e, Value a, bool* r), (e, a, r))
WRAP(napi_is_exception_pending, (Env e, bool* r), (e, r))
WRAP(napi_open_handle_scope, (Env e, napi_handle_scope* r), (e, r))
WRAP_COUNTED(napi_queue_async_work, (Env e, napi_async_work a), (e, a), &Counts::inFlight, 1)
WRAP_COUNTED(napi_reject_deferred, (Env e, napi_deferred a, Value b), (e, a, b), &Counts::deferreds, -1)
WRAP_COUNTED(napi_resolve_deferred, (Env e, napi_deferred a, Value b), (e, a, b), &Counts::deferreds, -1)
WRAP(napi_set_element, (Env e, Value a, uint32_t b, Value c), (e, a, b, c))
WRAP(napi_set_named_property, (Env e, Value a, const char* b, Value c), (e, a, b, c))
WRAP(napi_set_property, (Env e, Value a, Value b, Value c), (e, a, b, c))
WRAP(napi_throw_error, (Env e, const char* a, const char* b), (e, a, b))
WRAP(napi_typeof, (Env e, Value a, napi_valuetype* r), (e, a, r))

extern "C" decltype(napi_get_last_error_info) __real_napi_get_last_error_info;
extern "C" napi_status __wrap_napi_get_last_error_info(Env e, const napi_extended_error_info** r)
{
    napi_status status = napi_ok;
    if (!ZelkTest::TakeFault("napi_get_last_error_info", &status)) {
        *r = &g_injected;
        status = g_isInjected ? napi_ok : __real_napi_get_last_error_info(e, r);
    }
    return ZelkTest::Traced("napi_get_last_error_info", status);
}

// Closes in any case: the runtime ends a process whose scopes are left open.
extern "C" decltype(napi_close_handle_scope) __real_napi_close_handle_scope;
extern "C" napi_status __wrap_napi_close_handle_scope(Env e, napi_handle_scope a)
{
    napi_status status = __real_napi_close_handle_scope(e, a);
    return Fails("napi_close_handle_scope", &status), ZelkTest::Traced("napi_close_handle_scope", status);
}

// BaseContext's allocation functions, to count the records alive.
extern "C" void* __real__ZN4OHOS9HiviewDFX11BaseContextnwEm(size_t size);
extern "C" void* __wrap__ZN4OHOS9HiviewDFX11BaseContextnwEm(size_t size)
    { return TheCounts().records++, __real__ZN4OHOS9HiviewDFX11BaseContextnwEm(size); }
extern "C" void __real__ZN4OHOS9HiviewDFX11BaseContextdlEPv(void* storage);
extern "C" void __wrap__ZN4OHOS9HiviewDFX11BaseContextdlEPv(void* storage)
    { TheCounts().records--, __real__ZN4OHOS9HiviewDFX11BaseContextdlEPv(storage); }
// clang-format on
