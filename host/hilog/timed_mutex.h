// A mutex that a thread can wait for until a point in time.
#ifndef HOST_HILOG_TIMED_MUTEX_H
#define HOST_HILOG_TIMED_MUTEX_H

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <pthread.h>

#include "host/utils/thread_safety.h"

namespace OHOS::Host {

// Unlike std::timed_mutex, which some C++ libraries build from a mutex and a condition variable, it is one lock of the
// system: a thread that holds it during a fork can release it in the child.
class ZELK_LOCK TimedMutex {
public:
    TimedMutex() = default;
    TimedMutex(const TimedMutex&) = delete;
    TimedMutex& operator=(const TimedMutex&) = delete;

    void lock() ZELK_ACQUIRE() ZELK_NOT_ANALYZED
    {
        pthread_mutex_lock(&mutex_);
    }

    bool try_lock() ZELK_TRY_ACQUIRE(true)
    {
        return pthread_mutex_trylock(&mutex_) == 0;
    }

    bool try_lock_until(std::chrono::system_clock::time_point time) ZELK_TRY_ACQUIRE(true)
    {
        const auto nanoseconds = std::chrono::nanoseconds(time.time_since_epoch()).count();
        const auto [whole, rest] = std::lldiv(nanoseconds, 1'000'000'000);
        const timespec until{static_cast<std::time_t>(whole), static_cast<long>(rest)};
        return pthread_mutex_timedlock(&mutex_, &until) == 0;
    }

    void unlock() ZELK_RELEASE() ZELK_NOT_ANALYZED
    {
        pthread_mutex_unlock(&mutex_);
    }

private:
    pthread_mutex_t mutex_ = PTHREAD_MUTEX_INITIALIZER;
};

} // namespace OHOS::Host

#endif // HOST_HILOG_TIMED_MUTEX_H
