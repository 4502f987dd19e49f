#include "message_values.h"

#include <utility>

namespace OHOS::Host {

namespace {

constexpr char STRING[] = "s";

// The code of an answer whose types are `signature`; nothing is read of an answer with others.
bool ReadCode(const BusMessage& message, const char* signature, int32_t& code)
{
    return sd_bus_message_has_signature(message.get(), signature) > 0 &&
           sd_bus_message_read_basic(message.get(), SD_BUS_TYPE_INT32, &code) > 0;
}

} // namespace

bool Append(const BusMessage& message, bool value)
{
    const int flag = value ? 1 : 0;
    return sd_bus_message_append_basic(message.get(), SD_BUS_TYPE_BOOLEAN, &flag) >= 0;
}

bool Append(const BusMessage& message, int64_t value)
{
    return sd_bus_message_append_basic(message.get(), SD_BUS_TYPE_INT64, &value) >= 0;
}

bool Append(const BusMessage& message, const std::string& value)
{
    return value.find('\0') == std::string::npos &&
           sd_bus_message_append_basic(message.get(), SD_BUS_TYPE_STRING, value.c_str()) >= 0;
}

bool Append(const BusMessage& message, const std::vector<std::string>& value)
{
    bool good = sd_bus_message_open_container(message.get(), SD_BUS_TYPE_ARRAY, STRING) >= 0;
    for (const std::string& text : value) {
        good = good && Append(message, text);
    }
    return good && sd_bus_message_close_container(message.get()) >= 0;
}

bool Read(const BusMessage& message, int32_t& code, NoValue&)
{
    return ReadCode(message, "i", code);
}

bool Read(const BusMessage& message, int32_t& code, bool& value)
{
    int32_t readCode = 0;
    int flag = 0;
    if (!ReadCode(message, "ib", readCode) ||
        sd_bus_message_read_basic(message.get(), SD_BUS_TYPE_BOOLEAN, &flag) <= 0) {
        return false;
    }
    code = readCode;
    value = flag != 0;
    return true;
}

bool Read(const BusMessage& message, int32_t& code, std::string& value)
{
    int32_t readCode = 0;
    const char* text = nullptr;
    if (!ReadCode(message, "is", readCode) ||
        sd_bus_message_read_basic(message.get(), SD_BUS_TYPE_STRING, &text) <= 0) {
        return false;
    }
    code = readCode;
    value = text;
    return true;
}

bool Read(const BusMessage& message, int32_t& code, std::vector<std::string>& value)
{
    int32_t readCode = 0;
    if (!ReadCode(message, "ias", readCode) ||
        sd_bus_message_enter_container(message.get(), SD_BUS_TYPE_ARRAY, STRING) <= 0) {
        return false;
    }
    std::vector<std::string> texts;
    const char* text = nullptr;
    int result = 0;
    while ((result = sd_bus_message_read_basic(message.get(), SD_BUS_TYPE_STRING, &text)) > 0) {
        texts.emplace_back(text);
    }
    if (result < 0) {
        return false;
    }
    code = readCode;
    value = std::move(texts);
    return true;
}

} // namespace OHOS::Host
