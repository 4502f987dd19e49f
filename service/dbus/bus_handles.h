// Owning pointers for sd-bus's objects.
#ifndef SERVICE_DBUS_BUS_HANDLES_H
#define SERVICE_DBUS_BUS_HANDLES_H

#include <chrono>
#include <memory>
#include <string>

#include <systemd/sd-bus.h>

namespace OHOS::Host {

struct BusDeleter {
    // Closes the connection; messages still queued for the bus are dropped.
    void operator()(sd_bus* bus) const
    {
        sd_bus_close_unref(bus);
    }
    void operator()(sd_bus_message* message) const
    {
        sd_bus_message_unref(message);
    }
    void operator()(sd_bus_slot* slot) const
    {
        sd_bus_slot_unref(slot);
    }
};

using BusHandle = std::unique_ptr<sd_bus, BusDeleter>;
using BusMessage = std::unique_ptr<sd_bus_message, BusDeleter>;
using BusSlot = std::unique_ptr<sd_bus_slot, BusDeleter>;

// Opens a connection to the bus at `address`, whose own calls may take up to `limit`. Returns a negative errno when
// that fails, -EINVAL for text that is not an address.
int OpenBus(const std::string& address, std::chrono::microseconds limit, BusHandle& bus);

} // namespace OHOS::Host

#endif // SERVICE_DBUS_BUS_HANDLES_H
