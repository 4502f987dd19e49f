// Linked as the module is, with the module's own object files. Such a library exports nothing, so it passes the
// functions under test to the test when it is loaded.
#include "reply_test.h"

#include "config/json_to_object.h"
#include "napi/calls/config_reply.h"

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

const bool g_isHanded = (TakeConversion(Convert), true);

} // namespace
