// The values that calls of the log service carry, to and from the messages of the bus.
#ifndef SERVICE_DBUS_MESSAGE_VALUES_H
#define SERVICE_DBUS_MESSAGE_VALUES_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <systemd/sd-bus.h>

#include "service/api/operations.h"

namespace OHOS::Host {

// Each appends one value to `message`, and returns a negative errno when a message cannot carry it: text that is not
// UTF-8 or contains a NUL, or more than fits. Nothing is appended for Nothing.
int Append(sd_bus_message* message, int32_t value);
int Append(sd_bus_message* message, const Argument& value);
int Append(sd_bus_message* message, const Value& value);

// Each reads the next value of `message` into `value`, and returns false when the next value has another type.
bool Read(sd_bus_message* message, int32_t& value);
bool Read(sd_bus_message* message, Type type, Value& value);

// Passes each text of the list that comes next to `take`, until `take` returns false. Returns false then, or when the
// next value is not a list.
bool ReadEach(sd_bus_message* message, const std::function<bool(const char* text)>& take);

} // namespace OHOS::Host

#endif // SERVICE_DBUS_MESSAGE_VALUES_H
