// The connections of this process to one bus.
#ifndef HOST_DBUS_BUS_POOL_H
#define HOST_DBUS_BUS_POOL_H

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "bus_connection.h"

namespace OHOS::Host {

// Every call has a connection to itself while it lasts, so that calls of several threads are in flight at once and no
// extra thread has to read for all of them. There are as many connections as there have been calls at the same time, up
// to a limit; none before the first call. May be used from any thread.
class BusPool {
public:
    // `onInvalid` is called, on any thread, each time libsystemd refuses the bus's address.
    BusPool(std::string address, void (*onInvalid)());

    // Lends the caller an open connection; or returns a negative errno when the bus cannot be reached in time.
    int Acquire(Deadline deadline, std::unique_ptr<BusConnection>& connection);

    // Returns the connection to the pool.
    void Release(std::unique_ptr<BusConnection> connection);

private:
    std::unique_ptr<BusConnection> AcquireIdle();

    const std::string address_;
    void (*const onInvalid_)();
    std::mutex mutex_; // Guards idle_.
    std::vector<std::unique_ptr<BusConnection>> idle_;
};

} // namespace OHOS::Host

#endif // HOST_DBUS_BUS_POOL_H
