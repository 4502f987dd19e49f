#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "common/module_log.h"
#include "napi/util/checked_call.h"
#include "napi/util/handle_scope.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

namespace {

// Appends the result of `convert` for each element; an element that cannot be fetched is skipped.
template <typename T, typename Convert>
void AppendElements(napi_env env, napi_value array, std::vector<T>& out, Convert convert)
{
    const uint32_t length = NapiUtil::GetArrayLength(env, array);
    ChunkedHandleScope scope(env);
    for (uint32_t index = 0; index < length; ++index) {
        scope.Next();
        napi_value element = NapiUtil::GetElement(env, array, index);
        if (element != nullptr) {
            out.push_back(convert(env, element));
        }
    }
}

} // namespace

bool NapiUtil::MatchValueType(napi_env env, napi_value value, napi_valuetype expected)
{
    napi_valuetype type = napi_undefined;
    return CheckCall(env, napi_typeof(env, value, &type)) && type == expected;
}

napi_valuetype NapiUtil::GetType(napi_env env, napi_value value)
{
    napi_valuetype type = napi_undefined;
    if (napi_typeof(env, value, &type) != napi_ok) {
        ZELK_ERROR("GetType: unknown type");
        return napi_undefined;
    }
    return type;
}

bool NapiUtil::IsUndefined(napi_env env, napi_value value)
{
    napi_valuetype type = napi_undefined;
    napi_typeof(env, value, &type);
    return type == napi_undefined;
}

bool NapiUtil::IsArray(napi_env env, napi_value value)
{
    bool isArray = false;
    if (napi_is_array(env, value, &isArray) != napi_ok) {
        ZELK_ERROR("IsArray: failed to check array type");
        return false;
    }
    return isArray;
}

bool NapiUtil::GetBool(napi_env env, napi_value value)
{
    bool result = false;
    if (napi_get_value_bool(env, value, &result) != napi_ok) {
        ZELK_ERROR("failed to get bool value");
        return false;
    }
    return result;
}

int32_t NapiUtil::GetInt32(napi_env env, napi_value value)
{
    int32_t result = 0;
    if (napi_get_value_int32(env, value, &result) != napi_ok) {
        ZELK_ERROR("GetInt32: failed to get int32 value , so return zero");
        return 0;
    }
    return result;
}

int64_t NapiUtil::GetInt64(napi_env env, napi_value value)
{
    int64_t result = 0;
    if (napi_get_value_int64(env, value, &result) != napi_ok) {
        // The text of the 32-bit reader, on purpose.
        ZELK_ERROR("GetInt32: failed to get int32 value , so return zero");
        return 0;
    }
    return result;
}

std::string NapiUtil::GetString(napi_env env, napi_value value)
{
    size_t length = 0;
    if (napi_get_value_string_utf8(env, value, nullptr, 0, &length) != napi_ok) {
        ZELK_ERROR("GetString: get len error");
        return "";
    }
    if (length == 0 || length > MAX_STRING_LENGTH) {
        ZELK_ERROR("GetString: len error");
        return "";
    }
    const std::unique_ptr<char[]> buffer(new char[length + 1]);
    if (napi_get_value_string_utf8(env, value, buffer.get(), length + 1, &length) != napi_ok) {
        ZELK_ERROR("failed to get string value");
        return "";
    }
    return buffer.get();
}

napi_value NapiUtil::CreateStringValue(napi_env env, const std::string& text)
{
    napi_value result = nullptr;
    return CheckCall(env, napi_create_string_utf8(env, text.data(), text.size(), &result)) ? result : nullptr;
}

napi_value NapiUtil::GetProperty(napi_env env, napi_value object, const std::string& name)
{
    // Only a failing call matters: a property that the object lacks is fetched all the same and is `undefined`.
    bool has = false;
    if (napi_has_named_property(env, object, name.c_str(), &has) != napi_ok) {
        ZELK_ERROR("HasProperty: failed HasProperty");
        ZELK_ERROR("GetProperty: this object does not contains this property");
        return nullptr;
    }
    napi_value result = nullptr;
    if (napi_get_named_property(env, object, name.c_str(), &result) != napi_ok) {
        ZELK_ERROR("GetProperty: failed to GetProperty");
        return nullptr;
    }
    return result;
}

void NapiUtil::GetPropertyNames(napi_env env, napi_value object, std::vector<std::string>& names)
{
    napi_value list = nullptr;
    if (napi_get_property_names(env, object, &list) != napi_ok) {
        ZELK_ERROR("failed to get property names.");
        return;
    }
    uint32_t count = 0;
    if (napi_get_array_length(env, list, &count) != napi_ok) {
        ZELK_ERROR("failed to get array length");
        return;
    }
    names.reserve(names.size() + count);
    ChunkedHandleScope scope(env);
    for (uint32_t index = 0; index < count; ++index) {
        scope.Next();
        napi_value element = nullptr;
        if (napi_get_element(env, list, index, &element) != napi_ok) {
            ZELK_ERROR("failed to get the element of array");
            continue;
        }
        names.push_back(GetString(env, element));
    }
}

void NapiUtil::SetPropertyStringUtf8(napi_env env, napi_value object, const std::string& name, const std::string& value)
{
    napi_value text = nullptr;
    napi_status status = napi_create_string_utf8(env, value.data(), value.size(), &text);
    if (status == napi_ok) {
        status = napi_set_named_property(env, object, name.c_str(), text);
    }
    CheckCall(env, status);
}

uint32_t NapiUtil::GetArrayLength(napi_env env, napi_value array)
{
    uint32_t length = 0;
    if (napi_get_array_length(env, array, &length) != napi_ok) {
        ZELK_ERROR("GetArrayLength: failed to get the length of array");
        return 0;
    }
    return length;
}

napi_value NapiUtil::GetElement(napi_env env, napi_value array, uint32_t index)
{
    if (array == nullptr) {
        ZELK_ERROR("GetElement: array is null");
        return nullptr;
    }
    napi_value element = nullptr;
    if (napi_get_element(env, array, index, &element) != napi_ok) {
        // "elemrnt" is part of the text.
        ZELK_ERROR("GetElement: failed to get the elemrnt of array");
        return nullptr;
    }
    return element;
}

napi_valuetype NapiUtil::GetArrayType(napi_env env, napi_value array)
{
    uint32_t length = 0;
    if (napi_get_array_length(env, array, &length) != napi_ok) {
        ZELK_ERROR("GetArrayType: failed to get the length of array");
        return napi_undefined;
    }
    if (length == 0) {
        return napi_null;
    }
    napi_valuetype arrayType = napi_undefined;
    ChunkedHandleScope scope(env);
    for (uint32_t index = 0; index < length; ++index) {
        scope.Next();
        napi_value element = nullptr;
        if (napi_get_element(env, array, index, &element) != napi_ok) {
            ZELK_ERROR("GetArrayType: failed to get the element of array");
            return napi_undefined;
        }
        const napi_valuetype type = GetType(env, element);
        if (index == 0) {
            arrayType = type;
        } else if (type != arrayType) {
            ZELK_ERROR("GetArrayType: array has different element types");
            return napi_undefined;
        }
    }
    return arrayType;
}

void NapiUtil::GetBooleans(napi_env env, napi_value array, std::vector<bool>& out)
{
    AppendElements(env, array, out, GetBool);
}

void NapiUtil::GetInt32s(napi_env env, napi_value array, std::vector<int>& out)
{
    AppendElements(env, array, out, GetInt32);
}

void NapiUtil::GetStrings(napi_env env, napi_value array, std::vector<std::string> out, uint32_t)
{
    AppendElements(env, array, out, GetString);
}

} // namespace OHOS::HiviewDFX
