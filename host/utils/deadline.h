// A point in time at which waiting ends.
#ifndef HOST_UTILS_DEADLINE_H
#define HOST_UTILS_DEADLINE_H

#include <algorithm>
#include <chrono>

namespace OHOS::Host {

using Deadline = std::chrono::steady_clock::time_point;

// The time left, zero when there is none. Rounded up, so that a loop that waits for it never spins without waiting.
template <typename Duration>
Duration TimeUntil(Deadline deadline)
{
    return std::max(std::chrono::ceil<Duration>(deadline - std::chrono::steady_clock::now()), Duration::zero());
}

} // namespace OHOS::Host

#endif // HOST_UTILS_DEADLINE_H
