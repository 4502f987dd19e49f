#include "config/json_text.h"

// The service's texts are read by the rules of Json::Reader, which its successor Json::CharReader does not share.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#include <json/reader.h>

namespace OHOS::HiviewDFX {

bool ParseJson(const std::string& text, Json::Value& root)
{
    Json::Reader reader;
    return reader.parse(text, root, true);
}

} // namespace OHOS::HiviewDFX
