#include "message_values.h"

#include <algorithm>

namespace OHOS::Host {

namespace {

constexpr char STRING[] = "s";

} // namespace

bool Append(sd_bus_message*, NoValue)
{
    return true;
}

bool Append(sd_bus_message* message, bool value)
{
    const int flag = value ? 1 : 0;
    return sd_bus_message_append_basic(message, SD_BUS_TYPE_BOOLEAN, &flag) >= 0;
}

bool Append(sd_bus_message* message, int32_t value)
{
    return sd_bus_message_append_basic(message, SD_BUS_TYPE_INT32, &value) >= 0;
}

bool Append(sd_bus_message* message, int64_t value)
{
    return sd_bus_message_append_basic(message, SD_BUS_TYPE_INT64, &value) >= 0;
}

bool Append(sd_bus_message* message, const std::string& value)
{
    return value.find('\0') == std::string::npos &&
           sd_bus_message_append_basic(message, SD_BUS_TYPE_STRING, value.c_str()) >= 0;
}

bool Append(sd_bus_message* message, const std::vector<std::string>& value)
{
    const auto append = [message](const std::string& text) {
        return Append(message, text);
    };
    return sd_bus_message_open_container(message, SD_BUS_TYPE_ARRAY, STRING) >= 0 &&
           std::all_of(value.begin(), value.end(), append) && sd_bus_message_close_container(message) >= 0;
}

bool Read(sd_bus_message*, NoValue&)
{
    return true;
}

bool Read(sd_bus_message* message, bool& value)
{
    int flag = 0;
    const bool isRead = sd_bus_message_read_basic(message, SD_BUS_TYPE_BOOLEAN, &flag) > 0;
    value = flag != 0;
    return isRead;
}

bool Read(sd_bus_message* message, int32_t& value)
{
    return sd_bus_message_read_basic(message, SD_BUS_TYPE_INT32, &value) > 0;
}

bool Read(sd_bus_message* message, int64_t& value)
{
    return sd_bus_message_read_basic(message, SD_BUS_TYPE_INT64, &value) > 0;
}

bool Read(sd_bus_message* message, std::string& value)
{
    const char* text = nullptr;
    if (sd_bus_message_read_basic(message, SD_BUS_TYPE_STRING, &text) <= 0) {
        return false;
    }
    value = text;
    return true;
}

bool Read(sd_bus_message* message, std::vector<std::string>& value)
{
    return ReadEach(message, [&value](const char* text) {
        value.emplace_back(text);
        return true;
    });
}

bool ReadEach(sd_bus_message* message, const std::function<bool(const char* text)>& take)
{
    if (sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, STRING) <= 0) {
        return false;
    }
    const char* text = nullptr;
    int result = 0;
    while ((result = sd_bus_message_read_basic(message, SD_BUS_TYPE_STRING, &text)) > 0) {
        if (!take(text)) {
            return false;
        }
    }
    return result == 0 && sd_bus_message_exit_container(message) >= 0;
}

} // namespace OHOS::Host
