// The functions of the JavaScript runtime that this process runs on, under names that the adaptation does not define.
#ifndef HOST_NAPI_RUNTIME_H
#define HOST_NAPI_RUNTIME_H

#include "napi/native_api.h"

namespace OHOS::Host {

// The module is written for the platform's Node-API; desktop runtimes answer a few calls differently. The other files
// in this folder define those calls, under their plain names, inside the module's shared object, where the module's own
// calls bind to them. Each calls the runtime through this table.
struct Runtime {
    decltype(&napi_typeof) typeOf;
    decltype(&napi_is_array) isArray;
    decltype(&napi_is_exception_pending) isExceptionPending;
    decltype(&napi_get_and_clear_last_exception) getAndClearLastException;
    decltype(&napi_throw) throwValue;
    decltype(&napi_create_promise) createPromise;
    decltype(&napi_create_async_work) createAsyncWork;
    decltype(&napi_create_object) createObject;
    decltype(&napi_define_properties) defineProperties;
    decltype(&napi_create_reference) createReference;
    decltype(&napi_get_reference_value) getReferenceValue;
    decltype(&napi_delete_reference) deleteReference;
    decltype(&napi_get_all_property_names) getAllPropertyNames;
    decltype(&napi_has_named_property) hasNamedProperty;
    decltype(&napi_get_named_property) getNamedProperty;
    decltype(&napi_get_element) getElement;

    // Filled when the module is loaded.
    static const Runtime instance;
};

inline const Runtime& TheRuntime()
{
    return Runtime::instance;
}

// Runs `calls`, which returns a status, with no exception pending. An exception that was pending is pending again
// afterwards.
template <typename Calls>
napi_status WithoutPendingException(napi_env env, Calls calls)
{
    const Runtime& runtime = TheRuntime();
    bool isPending = false;
    napi_status status = runtime.isExceptionPending(env, &isPending);
    if (status != napi_ok || !isPending) {
        return calls();
    }
    napi_value exception = nullptr;
    status = runtime.getAndClearLastException(env, &exception);
    if (status != napi_ok) {
        return status;
    }
    status = calls();
    const napi_status throwStatus = runtime.throwValue(env, exception);
    return status != napi_ok ? status : throwStatus;
}

} // namespace OHOS::Host

#endif // HOST_NAPI_RUNTIME_H
