#include "napi/calls/config_reply.h"

#include <cstdint>

#include "config/json_text.h"
#include "napi/util/handle_scope.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

namespace {

void CopyString(napi_env env, const char* name, const Json::Value& member, napi_value item)
{
    if (member.isString()) {
        NapiUtil::SetPropertyStringUtf8(env, item, name, member.asString());
    }
}

// False when the text cannot be parsed.
bool FillItem(napi_env env, const std::string& text, ExpandValue expandValue, napi_value item)
{
    Json::Value parsed;
    if (!ParseJson(text, parsed)) {
        return false;
    }
    const Json::Value& root = parsed.isObject() ? parsed : Json::Value::nullSingleton();
    CopyString(env, "configKey", root["configKey"], item);
    CopyString(env, "value", root["value"], item);
    if (expandValue != nullptr) {
        expandValue(env, root["value"], item);
    }
    return true;
}

} // namespace

bool ConfigReplyToArray(napi_env env, const std::vector<std::string>& texts, ExpandValue expandValue, napi_value* array)
{
    napi_create_array(env, array);
    uint32_t index = 0;
    for (const std::string& text : texts) {
        const HandleScope scope(env);
        napi_value item = nullptr;
        napi_create_object(env, &item);
        try {
            if (!FillItem(env, text, expandValue, item)) {
                return false;
            }
        } catch (...) {
            // jsoncpp throws for a text nested too deeply and for an integer that does not fit: the text counts as
            // unparsable. The handler names no type because none would match on a device: there the module is linked
            // with its own copy of the type information, and libc++ compares types by its address.
            return false;
        }
        napi_set_element(env, *array, index++, item);
    }
    return true;
}

} // namespace OHOS::HiviewDFX
