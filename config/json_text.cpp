#include "config/json_text.h"

// The service's texts follow the rules of Json::Reader, which differ from those of its successor Json::CharReader.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#include <json/reader.h>

namespace OHOS::HiviewDFX {

bool ParseJson(const std::string& text, Json::Value& root)
{
    // Comments are skipped. jsoncpp would look back from each of them to the last value, so that a text of many
    // comments would take time quadratic in its length.
    constexpr bool COLLECT_COMMENTS = false;
    Json::Reader reader;
    return reader.parse(text, root, COLLECT_COMMENTS);
}

} // namespace OHOS::HiviewDFX
