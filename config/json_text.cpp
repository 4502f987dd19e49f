#include "config/json_text.h"

// The service's texts follow the rules of Json::Reader, which differ from those of its successor Json::CharReader.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#include <json/reader.h>

namespace OHOS::HiviewDFX {

bool ParseJson(const std::string& text, Json::Value& root)
{
    Json::Reader reader;
    return reader.parse(text, root, true);
}

} // namespace OHOS::HiviewDFX
