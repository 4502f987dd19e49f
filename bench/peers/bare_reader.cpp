// The Node-API calls without which the values of [{configKey, value: {name: value, ..}}, ..] cannot be read, and
// nothing else: no check, no copy that outlives the call, no list of items.
#include "addon.h"

namespace {

// Longer strings than the benchmark's are cut.
char g_text[256];

void ReadString(napi_env env, napi_value value)
{
    size_t length = 0;
    napi_get_value_string_utf8(env, value, g_text, sizeof(g_text), &length);
}

void ReadValue(napi_env env, napi_value value);

void ReadList(napi_env env, napi_value list)
{
    uint32_t length = 0;
    napi_get_array_length(env, list, &length);
    for (uint32_t i = 0; i < length; ++i) {
        napi_value element = nullptr;
        napi_get_element(env, list, i, &element);
        ReadValue(env, element);
    }
}

void ReadValue(napi_env env, napi_value value)
{
    napi_valuetype type = napi_undefined;
    napi_typeof(env, value, &type);
    bool flag = false;
    int32_t number = 0;
    switch (type) {
    case napi_boolean:
        napi_get_value_bool(env, value, &flag);
        break;
    case napi_number:
        napi_get_value_int32(env, value, &number);
        break;
    case napi_string:
        ReadString(env, value);
        break;
    default:
        ReadList(env, value);
        break;
    }
}

void ReadItem(napi_env env, napi_value item)
{
    napi_value key = nullptr;
    napi_value object = nullptr;
    napi_value names = nullptr;
    uint32_t count = 0;
    napi_get_named_property(env, item, "configKey", &key);
    ReadString(env, key);
    napi_get_named_property(env, item, "value", &object);
    napi_get_property_names(env, object, &names);
    napi_get_array_length(env, names, &count);
    for (uint32_t i = 0; i < count; ++i) {
        napi_value name = nullptr;
        napi_value value = nullptr;
        napi_get_element(env, names, i, &name);
        ReadString(env, name);
        napi_get_property(env, object, name, &value);
        ReadValue(env, value);
    }
}

napi_value ReadItems(napi_env env, napi_callback_info info)
{
    napi_value arguments[1] = {};
    ReadArguments(env, info, arguments);
    uint32_t length = 0;
    napi_get_array_length(env, arguments[0], &length);
    for (uint32_t i = 0; i < length; ++i) {
        napi_handle_scope scope = nullptr;
        napi_value item = nullptr;
        napi_open_handle_scope(env, &scope);
        napi_get_element(env, arguments[0], i, &item);
        ReadItem(env, item);
        napi_close_handle_scope(env, scope);
    }
    return nullptr;
}

} // namespace

BENCH_EXPORT napi_value napi_register_module_v1(napi_env env, napi_value exports)
{
    Export(env, exports, "readItems", ReadItems);
    return exports;
}
