#include "config/json_to_object.h"

#include <json/value.h>

#include "common/module_log.h"
#include "config/json_text.h"
#include "napi/util/handle_scope.h"

namespace OHOS::HiviewDFX {

namespace {

// Null for an array, an object and a value that cannot be made.
napi_value ScalarToJs(napi_env env, const Json::Value& member)
{
    napi_value value = nullptr;
    switch (member.type()) {
    case Json::nullValue:
        napi_get_null(env, &value);
        break;
    case Json::intValue:
        napi_create_int32(env, member.asInt(), &value);
        break;
    case Json::uintValue:
        napi_create_uint32(env, member.asUInt(), &value);
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
    case Json::arrayValue:
    case Json::objectValue:
        break;
    }
    return value;
}

} // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): callers may pass a temporary text.
void ConvertJsonToObject(napi_env env, std::string text, napi_value object)
{
    Json::Value root;
    if (!ParseJson(text, root)) {
        ZELK_ERROR("ConvertJsonToObject: json parse error");
        return;
    }
    if (!root.isObject()) {
        return;
    }
    const char* nameEnd = nullptr; // Not needed: a name is cut at its first NUL, as text is.
    ChunkedHandleScope scope(env);
    for (auto member = root.begin(); member != root.end(); ++member) {
        scope.Next();
        napi_value value = ScalarToJs(env, *member);
        napi_value name = nullptr;
        napi_create_string_utf8(env, member.memberName(&nameEnd), NAPI_AUTO_LENGTH, &name);
        // Fails for a null value: that member is left out.
        napi_set_property(env, object, name, value);
    }
}

} // namespace OHOS::HiviewDFX
