#include <cstdint>

#include "runtime.h"

// The platform refuses to read properties of a value that is not an object, with napi_object_expected and without an
// exception; desktop runtimes convert such a value to an object, or leave a TypeError pending where they cannot.

namespace {

using OHOS::Host::TheRuntime;

napi_status RequireObject(napi_env env, napi_value value)
{
    napi_valuetype type = napi_undefined;
    const napi_status status = TheRuntime().typeOf(env, value, &type);
    if (status != napi_ok) {
        return status;
    }
    return type == napi_object || type == napi_function ? napi_ok : napi_object_expected;
}

} // namespace

// The platform lists own names only; desktop runtimes list inherited ones as well.
napi_status napi_get_property_names(napi_env env, napi_value object, napi_value* result)
{
    const napi_status status = RequireObject(env, object);
    if (status != napi_ok) {
        return status;
    }
    constexpr auto enumerableStrings = static_cast<napi_key_filter>(napi_key_enumerable | napi_key_skip_symbols);
    return TheRuntime().getAllPropertyNames(env, object, napi_key_own_only, enumerableStrings,
                                            napi_key_numbers_to_strings, result);
}

napi_status napi_has_named_property(napi_env env, napi_value object, const char* utf8name, bool* result)
{
    const napi_status status = RequireObject(env, object);
    return status == napi_ok ? TheRuntime().hasNamedProperty(env, object, utf8name, result) : status;
}

napi_status napi_get_named_property(napi_env env, napi_value object, const char* utf8name, napi_value* result)
{
    const napi_status status = RequireObject(env, object);
    return status == napi_ok ? TheRuntime().getNamedProperty(env, object, utf8name, result) : status;
}

napi_status napi_get_element(napi_env env, napi_value object, uint32_t index, napi_value* result)
{
    // Values read by index are nearly always arrays, and napi_is_array is quicker than napi_typeof.
    bool isArray = false;
    const bool isKnown = TheRuntime().isArray(env, object, &isArray) == napi_ok && isArray;
    const napi_status status = isKnown ? napi_ok : RequireObject(env, object);
    return status == napi_ok ? TheRuntime().getElement(env, object, index, result) : status;
}
