// A JSON object parsed with jsoncpp and set on a JavaScript object by a bare loop.
#include <string>

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#include <json/json.h>

#include "addon.h"

namespace {

napi_value ToJs(napi_env env, const Json::Value& member)
{
    napi_value value = nullptr;
    switch (member.type()) {
    case Json::intValue:
        napi_create_int32(env, member.asInt(), &value);
        break;
    case Json::realValue:
        napi_create_double(env, member.asDouble(), &value);
        break;
    case Json::stringValue:
        napi_create_string_utf8(env, member.asCString(), NAPI_AUTO_LENGTH, &value);
        break;
    case Json::booleanValue:
        napi_get_boolean(env, member.asBool(), &value);
        break;
    default:
        napi_get_null(env, &value);
        break;
    }
    return value;
}

napi_value SetMembers(napi_env env, napi_callback_info info)
{
    napi_value arguments[2] = {};
    ReadArguments(env, info, arguments);
    size_t length = 0;
    napi_get_value_string_utf8(env, arguments[0], nullptr, 0, &length);
    std::string text(length, '\0');
    napi_get_value_string_utf8(env, arguments[0], text.data(), length + 1, &length);

    Json::Value root;
    Json::Reader reader;
    reader.parse(text, root, false);
    const char* nameEnd = nullptr;
    for (auto member = root.begin(); member != root.end(); ++member) {
        napi_set_named_property(env, arguments[1], member.memberName(&nameEnd), ToJs(env, *member));
    }
    return nullptr;
}

} // namespace

BENCH_EXPORT napi_value napi_register_module_v1(napi_env env, napi_value exports)
{
    Export(env, exports, "setMembers", SetMembers);
    return exports;
}
