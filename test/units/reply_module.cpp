// Linked as the module is, with the module's own object files. Such a library exports nothing, so it passes the
// function under test to the test when it is loaded.
#include "config/json_to_object.h"
#include "napi/calls/config_reply.h"

// Of reply_test.cpp.
extern bool (*g_conversion)(const std::string& text);

namespace {

using namespace OHOS::HiviewDFX;

void ExpandText(napi_env env, const Json::Value& value, napi_value item)
{
    ConvertJsonToObject(env, value.asString(), item);
}

bool Convert(const std::string& text)
{
    napi_value array = nullptr;
    return ConfigReplyToArray(nullptr, {text}, ExpandText, &array);
}

const bool g_isHanded = (g_conversion = Convert) != nullptr;

} // namespace
