// The identity that a test gives to its process.
#ifndef HOST_TESTING_CALLER_H
#define HOST_TESTING_CALLER_H

#include <cstdint>
#include <optional>

namespace OHOS::Host {

// Makes `token` the process's full token id; without a value it is the environment's again. The last call wins,
// whichever thread made it.
void SetCaller(std::optional<uint64_t> token);

// Restores the environment's identity if the last call was made by this thread.
void ForgetCallerOfThisThread();

} // namespace OHOS::Host

#endif // HOST_TESTING_CALLER_H
