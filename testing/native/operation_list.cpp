#include "operation_list.h"

#include <cstdint>
#include <string>

#include "js_value.h"
#include "service/api/operations.h"

namespace OHOS::Host {

namespace {

const char* NameOf(Type type)
{
    switch (type) {
    case Type::BOOL:
        return "a boolean";
    case Type::INT64:
        return "a bigint";
    case Type::TEXT:
        return "a string";
    case Type::TEXTS:
        return "an array of strings";
    case Type::NOTHING:
        break;
    }
    return "nothing";
}

void Set(napi_env env, napi_value object, const char* name, const char* text)
{
    napi_set_named_property(env, object, name, ToJs(env, std::string(text)));
}

} // namespace

napi_value MakeOperationList(napi_env env)
{
    napi_value list = nullptr;
    napi_create_array_with_length(env, OPERATIONS.size(), &list);
    uint32_t index = 0;
    for (const Operation& operation : OPERATIONS) {
        napi_value row = nullptr;
        napi_create_object(env, &row);
        Set(env, row, "method", operation.method);
        Set(env, row, "name", operation.name);
        Texts types;
        for (const Type type : operation.arguments) {
            if (type != Type::NOTHING) {
                types.emplace_back(NameOf(type));
            }
        }
        napi_set_named_property(env, row, "args", ToJs(env, Value(types)));
        Set(env, row, "answer", NameOf(operation.answer));
        napi_set_element(env, list, index++, row);
    }
    return list;
}

} // namespace OHOS::Host
