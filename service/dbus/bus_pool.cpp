#include "bus_pool.h"

#include <cerrno>
#include <exception>
#include <thread>
#include <utility>

namespace OHOS::Host {

namespace {

using std::chrono::steady_clock;

// The usual number of a runtime's worker threads. This many connections may stay open.
constexpr size_t FEW = 4;

} // namespace

BusPool::BusPool(std::string address, void (*onInvalid)(), Duration idleLimit)
    : address_(std::move(address)), onInvalid_(onInvalid), idleLimit_(idleLimit)
{
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

void BusPool::Release(std::unique_ptr<BusConnection> connection) noexcept
{
    try {
        const std::lock_guard<std::mutex> lock(mutex_);
        idle_.push_back({std::move(connection), steady_clock::now() + idleLimit_});
        if (idle_.size() > FEW && !isClosing_) {
            StartClosing();
        }
    } catch (const std::exception&) {
        // Out of memory: the connection is closed at once, or the idle ones later.
    }
}

// The connection that was used last, so that successive calls leave the others idle.
std::unique_ptr<BusConnection> BusPool::AcquireIdle()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (idle_.empty()) {
        return nullptr;
    }
    std::unique_ptr<BusConnection> connection = std::move(idle_.back().connection);
    idle_.pop_back();
    return connection;
}

void BusPool::StartClosing()
{
    std::thread([weak = weak_from_this(), pause = idleLimit_ / 4] {
        std::shared_ptr<BusPool> pool;
        do {
            pool.reset();
            std::this_thread::sleep_for(pause);
            pool = weak.lock();
        } while (pool != nullptr && pool->CloseIdle());
    }).detach();
    isClosing_ = true;
}

bool BusPool::CloseIdle()
{
    while (true) {
        std::unique_ptr<BusConnection> closed; // Destroyed when the lock has been released.
        const std::lock_guard<std::mutex> lock(mutex_);
        if (idle_.size() <= FEW) {
            isClosing_ = false;
            return false;
        }
        if (steady_clock::now() < idle_.front().end) {
            return true;
        }
        closed = std::move(idle_.front().connection);
        idle_.erase(idle_.begin());
    }
}

} // namespace OHOS::Host
