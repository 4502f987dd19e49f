#include "bus_handles.h"

#include <cerrno>
#include <cstdint>

namespace OHOS::Host {

int OpenBus(const std::string& address, std::chrono::microseconds limit, BusHandle& bus)
{
    sd_bus* raw = nullptr;
    int result = sd_bus_new(&raw);
    bus.reset(raw);
    if (result >= 0) {
        result = sd_bus_set_address(raw, address.c_str());
    }
    if (result >= 0) {
        result = sd_bus_set_bus_client(raw, 1);
    }
    // Otherwise libsystemd looks for a limit in the environment, which another thread may be changing.
    if (result >= 0) {
        result = sd_bus_set_method_call_timeout(raw, static_cast<uint64_t>(limit.count()));
    }
    if (result >= 0) {
        result = sd_bus_start(raw);
    }
    return result == -E2BIG ? -EINVAL : result; // The path of a socket is too long.
}

} // namespace OHOS::Host
