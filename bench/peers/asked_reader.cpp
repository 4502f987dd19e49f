// What the module's behaviour asks for when items are read from arguments, in one piece of code without wrappers, log
// lines or status checks. Each property is looked for before it is read, by its name as a C string and only on what is
// an object; each string is measured, and copied by way of a buffer of its length; all names of an object are
// read before its values; the elements of a list are looked at twice; the items are kept.
#include <memory>
#include <string>
#include <vector>

#include "addon.h"
#include "config/config_info.h"

namespace {

using OHOS::HiviewDFX::ConfigInfo;

std::vector<std::shared_ptr<ConfigInfo>> g_items;

napi_valuetype TypeOf(napi_env env, napi_value value)
{
    napi_valuetype type = napi_undefined;
    napi_typeof(env, value, &type);
    return type;
}

bool ReadBool(napi_env env, napi_value value)
{
    bool flag = false;
    napi_get_value_bool(env, value, &flag);
    return flag;
}

int ReadInt(napi_env env, napi_value value)
{
    int32_t number = 0;
    napi_get_value_int32(env, value, &number);
    return number;
}

std::string ReadString(napi_env env, napi_value value)
{
    size_t length = 0;
    napi_get_value_string_utf8(env, value, nullptr, 0, &length);
    const std::unique_ptr<char[]> buffer(new char[length + 1]);
    napi_get_value_string_utf8(env, value, buffer.get(), length + 1, &length);
    return buffer.get();
}

napi_value ReadProperty(napi_env env, napi_value object, const char* name)
{
    bool has = false;
    TypeOf(env, object);
    napi_has_named_property(env, object, name, &has);
    napi_value value = nullptr;
    TypeOf(env, object);
    napi_get_named_property(env, object, name, &value);
    return value;
}

uint32_t LengthOf(napi_env env, napi_value list)
{
    uint32_t length = 0;
    napi_get_array_length(env, list, &length);
    return length;
}

napi_value ReadElement(napi_env env, napi_value list, uint32_t index)
{
    bool isArray = false;
    napi_is_array(env, list, &isArray);
    napi_value element = nullptr;
    napi_get_element(env, list, index, &element);
    return element;
}

template <typename T, typename Read>
void AddList(napi_env env, ConfigInfo& item, const std::string& name, napi_value list, Read read)
{
    std::vector<T> values;
    const uint32_t length = LengthOf(env, list);
    for (uint32_t i = 0; i < length; ++i) {
        values.push_back(read(env, ReadElement(env, list, i)));
    }
    item.AddParam(name, values);
}

void AddList(napi_env env, ConfigInfo& item, const std::string& name, napi_value list)
{
    bool isArray = false;
    napi_is_array(env, list, &isArray);
    napi_valuetype type = napi_undefined;
    const uint32_t length = LengthOf(env, list);
    for (uint32_t i = 0; i < length; ++i) {
        type = TypeOf(env, ReadElement(env, list, i));
    }
    switch (type) {
    case napi_boolean:
        return AddList<bool>(env, item, name, list, ReadBool);
    case napi_number:
        return AddList<int>(env, item, name, list, ReadInt);
    default:
        return AddList<std::string>(env, item, name, list, ReadString);
    }
}

void AddParam(napi_env env, ConfigInfo& item, const std::string& name, napi_value value)
{
    switch (TypeOf(env, value)) {
    case napi_boolean:
        return item.AddParam(name, ReadBool(env, value));
    case napi_number:
        return item.AddParam(name, ReadInt(env, value));
    case napi_string:
        return item.AddParam(name, ReadString(env, value));
    default:
        return AddList(env, item, name, value);
    }
}

void ReadItem(napi_env env, napi_value element)
{
    const auto item = std::make_shared<ConfigInfo>(ReadString(env, ReadProperty(env, element, "configKey")));
    napi_value object = ReadProperty(env, element, "value");
    napi_value list = nullptr;
    napi_get_property_names(env, object, &list);
    std::vector<std::string> names;
    const uint32_t count = LengthOf(env, list);
    names.reserve(count);
    for (uint32_t i = 0; i < count; ++i) {
        names.push_back(ReadString(env, ReadElement(env, list, i)));
    }
    for (const std::string& name : names) {
        AddParam(env, *item, name, ReadProperty(env, object, name.c_str()));
    }
    g_items.push_back(item);
}

napi_value ReadItems(napi_env env, napi_callback_info info)
{
    napi_value arguments[1] = {};
    ReadArguments(env, info, arguments);
    const uint32_t length = LengthOf(env, arguments[0]);
    for (uint32_t i = 0; i < length; ++i) {
        napi_handle_scope scope = nullptr;
        napi_open_handle_scope(env, &scope);
        ReadItem(env, ReadElement(env, arguments[0], i));
        napi_close_handle_scope(env, scope);
    }
    return nullptr;
}

// To be called once the module would have answered and dropped its items.
napi_value DropItems(napi_env, napi_callback_info)
{
    g_items = {};
    return nullptr;
}

} // namespace

BENCH_EXPORT napi_value napi_register_module_v1(napi_env env, napi_value exports)
{
    Export(env, exports, "readItems", ReadItems);
    Export(env, exports, "dropItems", DropItems);
    return exports;
}
