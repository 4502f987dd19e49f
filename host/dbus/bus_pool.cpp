#include "bus_pool.h"

#include <cerrno>
#include <utility>

namespace OHOS::Host {

namespace {

constexpr size_t MAX_IDLE = 16;

}

BusPool::BusPool(std::string address, void (*onInvalid)()) : address_(std::move(address)), onInvalid_(onInvalid)
{
    idle_.reserve(MAX_IDLE); // So that Release does not allocate.
}

int BusPool::Acquire(Deadline deadline, std::unique_ptr<BusConnection>& connection)
{
    // A connection that the bus has closed meanwhile, for example because it was restarted, is dropped here.
    while (std::unique_ptr<BusConnection> idle = AcquireIdle()) {
        const int result = idle->ProcessPending(deadline);
        if (result == 0) {
            connection = std::move(idle);
        }
        if (result == 0 || result == -ETIMEDOUT) {
            return result;
        }
    }
    const int result = BusConnection::Open(address_, deadline, connection);
    if (result == -EINVAL) {
        onInvalid_();
    }
    return result;
}

void BusPool::Release(std::unique_ptr<BusConnection> connection)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (idle_.size() < MAX_IDLE) {
        idle_.push_back(std::move(connection));
    }
}

// The connection that was used last, so that calls one after the other leave the others alone.
std::unique_ptr<BusConnection> BusPool::AcquireIdle()
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
