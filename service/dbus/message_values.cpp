#include "message_values.h"

#include <cerrno>
#include <utility>

namespace OHOS::Host {

namespace {

constexpr char STRING[] = "s";

int AppendOne(sd_bus_message*, Nothing)
{
    return 0;
}

int AppendOne(sd_bus_message* message, bool value)
{
    const int flag = value ? 1 : 0;
    return sd_bus_message_append_basic(message, SD_BUS_TYPE_BOOLEAN, &flag);
}

int AppendOne(sd_bus_message* message, int64_t value)
{
    return sd_bus_message_append_basic(message, SD_BUS_TYPE_INT64, &value);
}

int AppendOne(sd_bus_message* message, const std::string& value)
{
    return value.find('\0') == std::string::npos
               ? sd_bus_message_append_basic(message, SD_BUS_TYPE_STRING, value.c_str())
               : -EINVAL;
}

int AppendOne(sd_bus_message* message, const Texts& value)
{
    int result = sd_bus_message_open_container(message, SD_BUS_TYPE_ARRAY, STRING);
    for (const std::string& text : value) {
        if (result >= 0) {
            result = AppendOne(message, text);
        }
    }
    return result < 0 ? result : sd_bus_message_close_container(message);
}

std::optional<bool> ReadFlag(sd_bus_message* message)
{
    int flag = 0;
    return sd_bus_message_read_basic(message, SD_BUS_TYPE_BOOLEAN, &flag) > 0 ? std::optional(flag != 0) : std::nullopt;
}

bool ReadTexts(sd_bus_message* message, Value& value)
{
    Texts texts;
    const bool isRead = ReadEach(message, [&texts](const char* text) {
        texts.emplace_back(text);
        return true;
    });
    value = std::move(texts);
    return isRead;
}

} // namespace

int Append(sd_bus_message* message, int32_t value)
{
    return sd_bus_message_append_basic(message, SD_BUS_TYPE_INT32, &value);
}

int Append(sd_bus_message* message, const Argument& value)
{
    const auto append = [message](auto argument) {
        if constexpr (std::is_same_v<decltype(argument), Nothing>) {
            return 0;
        } else {
            return AppendOne(message, *argument);
        }
    };
    return std::visit(append, value);
}

int Append(sd_bus_message* message, const Value& value)
{
    return std::visit([message](const auto& one) { return AppendOne(message, one); }, value);
}

bool Read(sd_bus_message* message, int32_t& value)
{
    return sd_bus_message_read_basic(message, SD_BUS_TYPE_INT32, &value) > 0;
}

bool Read(sd_bus_message* message, Type type, Value& value)
{
    int64_t number = 0;
    const char* text = nullptr;
    switch (type) {
    case Type::NOTHING:
        value = Nothing();
        return true;
    case Type::BOOL: {
        const std::optional<bool> flag = ReadFlag(message);
        value = flag.value_or(false);
        return flag.has_value();
    }
    case Type::INT64: {
        const bool isRead = sd_bus_message_read_basic(message, SD_BUS_TYPE_INT64, &number) > 0;
        value = number;
        return isRead;
    }
    case Type::TEXT: {
        const bool isRead = sd_bus_message_read_basic(message, SD_BUS_TYPE_STRING, &text) > 0;
        value = std::string(isRead ? text : "");
        return isRead;
    }
    case Type::TEXTS:
        return ReadTexts(message, value);
    }
    return false;
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
