// The text of one configuration item, {"configKey":"KEY","value":VALUE}, and JSON strings.
#ifndef SERVICE_REFERENCE_ITEM_TEXT_H
#define SERVICE_REFERENCE_ITEM_TEXT_H

#include <optional>
#include <string>
#include <string_view>

namespace OHOS::Host {

// Views into the text that was parsed.
struct Item {
    std::string_view key;
    std::string_view value;
};

// The frame of an item is text, not JSON: it starts with {"configKey":" and ends with }, and the key ends at the first
// ","value": in between. Key and value may be any text, even empty. Nothing when the text does not have this frame.
std::optional<Item> ParseItem(std::string_view text);

// `text` as a JSON string with its quotes. Bytes that are not UTF-8 stay as they are. A string that becomes longer than
// `most` is cut off there.
std::string JsonString(std::string_view text, size_t most = std::string::npos);

} // namespace OHOS::Host

#endif // SERVICE_REFERENCE_ITEM_TEXT_H
