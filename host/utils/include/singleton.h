// A process-wide instance that is created on first use, as on the platform.
#ifndef HOST_UTILS_SINGLETON_H
#define HOST_UTILS_SINGLETON_H

#include <atomic>
#include <memory>
#include <mutex>
#include <new>

#include "nocopyable.h"

namespace OHOS {

// Base of T and owner of its one instance. T is created by the first GetInstance and destroyed at process exit.
template <typename T>
class DelayedSingleton : public NoCopyable {
public:
    // The instance, shared with the caller. Any number of threads may call this at the same time; only the first
    // creation takes the lock. Null when there was no memory for the instance; the next call tries again.
    static std::shared_ptr<T> GetInstance()
    {
        // Once `created_` is true, `instance_` is no longer written, so it can be copied without the lock.
        if (!created_.load(std::memory_order_acquire)) {
            const std::lock_guard<std::mutex> lock(mutex_);
            if (!instance_) {
                instance_.reset(new (std::nothrow) T);
                created_.store(static_cast<bool>(instance_), std::memory_order_release);
            }
            return instance_;
        }
        return instance_;
    }

private:
    static std::shared_ptr<T> instance_;
    static std::mutex mutex_;
    static std::atomic<bool> created_;
};

template <typename T>
std::shared_ptr<T> DelayedSingleton<T>::instance_;

template <typename T>
std::mutex DelayedSingleton<T>::mutex_;

template <typename T>
std::atomic<bool> DelayedSingleton<T>::created_{false};

} // namespace OHOS

#endif // HOST_UTILS_SINGLETON_H
