#include "item_text.h"

namespace OHOS::Host {

namespace {

constexpr std::string_view HEAD = R"({"configKey":")";
constexpr std::string_view MIDDLE = R"(","value":)";
constexpr std::string_view TAIL = "}";

void AppendEscaped(std::string& json, char character)
{
    constexpr std::string_view HEX = "0123456789abcdef";
    constexpr std::string_view NAMED = "\"\\\b\f\n\r\t";
    constexpr std::string_view NAMES = "\"\\bfnrt";
    const auto code = static_cast<unsigned char>(character);
    if (code >= ' ' && character != '"' && character != '\\') {
        json += character;
        return;
    }
    const size_t named = NAMED.find(character);
    if (named != std::string_view::npos) {
        json += '\\';
        json += NAMES[named];
    } else {
        json += "\\u00";
        json += HEX[code >> 4U];
        json += HEX[code & 0xFU];
    }
}

} // namespace

std::optional<Item> ParseItem(std::string_view text)
{
    if (text.substr(0, HEAD.size()) != HEAD) {
        return std::nullopt;
    }
    text.remove_prefix(HEAD.size());
    const size_t middle = text.find(MIDDLE);
    if (middle == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view rest = text.substr(middle + MIDDLE.size());
    if (rest.empty() || rest.substr(rest.size() - TAIL.size()) != TAIL) {
        return std::nullopt;
    }
    return Item{text.substr(0, middle), rest.substr(0, rest.size() - TAIL.size())};
}

std::string JsonString(std::string_view text, size_t most)
{
    std::string json = "\"";
    json.reserve(text.size() + 2);
    for (const char character : text) {
        if (json.size() > most) {
            break;
        }
        AppendEscaped(json, character);
    }
    json += '"';
    return json;
}

} // namespace OHOS::Host
