// The values that calls of the log service carry, to and from the messages of the bus.
#ifndef HOST_DBUS_MESSAGE_VALUES_H
#define HOST_DBUS_MESSAGE_VALUES_H

#include <cstdint>
#include <string>
#include <vector>

#include "bus_connection.h"

namespace OHOS::Host {

// Each appends one value, and is false when a message cannot carry it: text that is not UTF-8 or has a NUL in it, or
// more than fits.
bool Append(const BusMessage& message, bool value);
bool Append(const BusMessage& message, int64_t value);
bool Append(const BusMessage& message, const std::string& value);
bool Append(const BusMessage& message, const std::vector<std::string>& value);

// An answer without a value.
struct NoValue {};

// Each reads an answer: the service's code and one value. They are false, and leave the arguments as they are, when
// `message` holds anything else.
bool Read(const BusMessage& message, int32_t& code, NoValue& value);
bool Read(const BusMessage& message, int32_t& code, bool& value);
bool Read(const BusMessage& message, int32_t& code, std::string& value);
bool Read(const BusMessage& message, int32_t& code, std::vector<std::string>& value);

} // namespace OHOS::Host

#endif // HOST_DBUS_MESSAGE_VALUES_H
