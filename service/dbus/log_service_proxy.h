// The client's proxy of a log service on D-Bus.
#ifndef SERVICE_DBUS_LOG_SERVICE_PROXY_H
#define SERVICE_DBUS_LOG_SERVICE_PROXY_H

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <utility>

#include "bus_pool.h"
#include "service/api/operations.h"

namespace OHOS::Host {

// Every operation returns the service's code, or an IpcCode when the call breaks off, which writes one line to the log.
// It takes no longer than the limit, including the time that finding the service took. Nothing here throws
// std::bad_alloc.
class LogServiceProxy : public ForwardedService {
public:
    using Duration = std::chrono::steady_clock::duration;

    // The service on the bus of `pool`, started if the bus can; null when its name has no owner or there is no bus,
    // with the reason in `whyNot`.
    static sptr<LogServiceProxy> Find(const std::shared_ptr<BusPool>& pool, Duration limit, std::string& whyNot);

    Outcome Call(const Operation& operation, const Arguments& arguments) override;

private:
    LogServiceProxy(std::shared_ptr<BusPool> pool, Duration limit, Duration spent)
        : pool_(std::move(pool)), limit_(limit), spent_(spent)
    {
    }

    Outcome CallBefore(Deadline deadline, const Operation& operation, const Arguments& arguments);

    const std::shared_ptr<BusPool> pool_;
    const Duration limit_;
    // The time that finding the service took, until the first call takes it into account.
    std::atomic<Duration> spent_;
};

} // namespace OHOS::Host

#endif // SERVICE_DBUS_LOG_SERVICE_PROXY_H
