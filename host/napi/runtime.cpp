#include "runtime.h"

#include <dlfcn.h>

namespace OHOS::Host {

namespace {

template <typename Function>
void Find(Function& function, const char* name)
{
    // The executable is searched first, so this is the runtime's function and never the adaptation's.
    function = reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, name));
}

Runtime FindRuntime()
{
    Runtime runtime = {};
    Find(runtime.typeOf, "napi_typeof");
    Find(runtime.isArray, "napi_is_array");
    Find(runtime.isExceptionPending, "napi_is_exception_pending");
    Find(runtime.getAndClearLastException, "napi_get_and_clear_last_exception");
    Find(runtime.throwValue, "napi_throw");
    Find(runtime.createPromise, "napi_create_promise");
    Find(runtime.createAsyncWork, "napi_create_async_work");
    Find(runtime.createObject, "napi_create_object");
    Find(runtime.defineProperties, "napi_define_properties");
    Find(runtime.createReference, "napi_create_reference");
    Find(runtime.getReferenceValue, "napi_get_reference_value");
    Find(runtime.deleteReference, "napi_delete_reference");
    Find(runtime.getAllPropertyNames, "napi_get_all_property_names");
    Find(runtime.hasNamedProperty, "napi_has_named_property");
    Find(runtime.getNamedProperty, "napi_get_named_property");
    Find(runtime.getElement, "napi_get_element");
    return runtime;
}

} // namespace

const Runtime Runtime::instance = FindRuntime();

} // namespace OHOS::Host
