#include "bus_pool.h"

namespace OHOS::Host {

namespace {

constexpr size_t MAX_IDLE = 16;

}

std::unique_ptr<BusConnection> BusPool::Take(Deadline deadline)
{
    // A connection that the bus has closed meanwhile, for example because it was restarted, falls away here.
    while (std::unique_ptr<BusConnection> idle = TakeIdle()) {
        if (idle->Update()) {
            return idle;
        }
    }
    return BusConnection::Open(bus_, deadline);
}

void BusPool::Return(std::unique_ptr<BusConnection> connection)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (idle_.size() < MAX_IDLE) {
        idle_.push_back(std::move(connection));
    }
}

// The one that was used last: the others need not even be awake while calls come one after the other.
std::unique_ptr<BusConnection> BusPool::TakeIdle()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (idle_.empty()) {
        return nullptr;
    }
    std::unique_ptr<BusConnection> connection = std::move(idle_.back());
    idle_.pop_back();
    return connection;
}

} // namespace OHOS::Host
