// The connections of this process to one bus.
#ifndef SERVICE_DBUS_BUS_POOL_H
#define SERVICE_DBUS_BUS_POOL_H

#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "bus_connection.h"
#include "host/utils/thread_safety.h"

namespace OHOS::Host {

// Every call has a connection to itself while it lasts, so that calls of several threads are in flight at once and no
// extra thread has to read for all of them. There are as many connections as there have been calls at the same time,
// and none before the first call. All but a few are closed after being idle for a while. May be used from any
// thread.
class BusPool : public std::enable_shared_from_this<BusPool> {
public:
    using Duration = std::chrono::steady_clock::duration;

    // `onInvalid` is called, on any thread, each time libsystemd refuses the bus's address. A connection is closed
    // after being idle for `idleLimit`, or a little longer.
    BusPool(std::string address, void (*onInvalid)(), Duration idleLimit = std::chrono::seconds(10));

    // Lends the caller an open connection; or returns a negative errno when the bus cannot be reached in time.
    int Acquire(Deadline deadline, std::unique_ptr<BusConnection>& connection);

    // Returns the connection to the pool.
    void Release(std::unique_ptr<BusConnection> connection) noexcept;

private:
    struct Idle {
        std::unique_ptr<BusConnection> connection;
        Deadline end; // When it is to be closed.
    };

    std::unique_ptr<BusConnection> AcquireIdle();

    // Closes what was idle for too long, in a thread that exists only while there are more than a few connections: the
    // calls of a usual runtime never start it.
    void StartClosing() ZELK_REQUIRES(mutex_);
    // False when only a few connections are left.
    bool CloseIdle();

    const std::string address_;
    void (*const onInvalid_)();
    const Duration idleLimit_;
    std::mutex mutex_;
    std::vector<Idle> idle_ ZELK_GUARDED_BY(mutex_); // In the order in which they were used.
    bool isClosing_ ZELK_GUARDED_BY(mutex_) = false;
};

} // namespace OHOS::Host

#endif // SERVICE_DBUS_BUS_POOL_H
