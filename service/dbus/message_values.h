// The values that calls of the log service carry, to and from the messages of the bus.
#ifndef SERVICE_DBUS_MESSAGE_VALUES_H
#define SERVICE_DBUS_MESSAGE_VALUES_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <systemd/sd-bus.h>

namespace OHOS::Host {

// The answer of a method that answers only its code.
struct NoValue {};

// Each appends one value to `message`, and returns false when a message cannot carry it: text that is not UTF-8 or
// contains a NUL, or more than fits.
bool Append(sd_bus_message* message, NoValue value);
bool Append(sd_bus_message* message, bool value);
bool Append(sd_bus_message* message, int32_t value);
bool Append(sd_bus_message* message, int64_t value);
bool Append(sd_bus_message* message, const std::string& value);
bool Append(sd_bus_message* message, const std::vector<std::string>& value);

// Each reads the next value of `message` into `value`, and returns false when the next value has another type. Lists
// are appended to.
bool Read(sd_bus_message* message, NoValue& value);
bool Read(sd_bus_message* message, bool& value);
bool Read(sd_bus_message* message, int32_t& value);
bool Read(sd_bus_message* message, int64_t& value);
bool Read(sd_bus_message* message, std::string& value);
bool Read(sd_bus_message* message, std::vector<std::string>& value);

// Passes each text of the list that comes next to `take`, until `take` returns false. Returns false then, or when the
// next value is not a list.
bool ReadEach(sd_bus_message* message, const std::function<bool(const char* text)>& take);

} // namespace OHOS::Host

#endif // SERVICE_DBUS_MESSAGE_VALUES_H
