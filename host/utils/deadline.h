// A point in time at which waiting ends.
#ifndef HOST_UTILS_DEADLINE_H
#define HOST_UTILS_DEADLINE_H

#include <chrono>

namespace OHOS::Host {

using Deadline = std::chrono::steady_clock::time_point;

} // namespace OHOS::Host

#endif // HOST_UTILS_DEADLINE_H
