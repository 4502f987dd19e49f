#include <cstdint>

#include "runtime.h"

// The platform keeps references to values of every type; desktop runtimes refuse a value that is not an object,
// function or symbol. Such a value is kept in a holder object, and the reference to the holder is marked in its lowest
// bit, which is free because references are addresses of aligned storage.

namespace {

using OHOS::Host::Runtime;
using OHOS::Host::TheRuntime;
using OHOS::Host::WithoutPendingException;

constexpr const char* HELD_VALUE = "value";

bool IsMarked(napi_ref reference)
{
    return (reinterpret_cast<uintptr_t>(reference) & 1U) != 0;
}

napi_ref Mark(napi_ref reference)
{
    return reinterpret_cast<napi_ref>(reinterpret_cast<char*>(reference) + 1);
}

napi_ref Unmark(napi_ref reference)
{
    return IsMarked(reference) ? reinterpret_cast<napi_ref>(reinterpret_cast<char*>(reference) - 1) : reference;
}

napi_status CreateHolder(napi_env env, napi_value value, napi_value* holder)
{
    const Runtime& runtime = TheRuntime();
    const napi_status status = runtime.createObject(env, holder);
    if (status != napi_ok) {
        return status;
    }
    napi_property_descriptor property = {};
    property.utf8name = HELD_VALUE;
    property.value = value;
    return runtime.defineProperties(env, *holder, 1, &property);
}

} // namespace

napi_status napi_create_reference(napi_env env, napi_value value, uint32_t initialCount, napi_ref* result)
{
    const Runtime& runtime = TheRuntime();
    napi_status status = runtime.createReference(env, value, initialCount, result);
    if (status == napi_ok || value == nullptr || result == nullptr) {
        return status;
    }
    napi_value holder = nullptr;
    // Allowed on the platform while an exception is pending, like any reference.
    status = WithoutPendingException(env, [&] { return CreateHolder(env, value, &holder); });
    if (status != napi_ok) {
        return status;
    }
    status = runtime.createReference(env, holder, initialCount, result);
    if (status == napi_ok) {
        *result = Mark(*result);
    }
    return status;
}

napi_status napi_get_reference_value(napi_env env, napi_ref reference, napi_value* result)
{
    const Runtime& runtime = TheRuntime();
    if (!IsMarked(reference)) {
        return runtime.getReferenceValue(env, reference, result);
    }
    napi_value holder = nullptr;
    const napi_status status = runtime.getReferenceValue(env, Unmark(reference), &holder);
    if (status != napi_ok) {
        return status;
    }
    return WithoutPendingException(env, [&] { return runtime.getNamedProperty(env, holder, HELD_VALUE, result); });
}

napi_status napi_delete_reference(napi_env env, napi_ref reference)
{
    return TheRuntime().deleteReference(env, Unmark(reference));
}
