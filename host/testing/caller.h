// The identity that a test gives its process.
#ifndef HOST_TESTING_CALLER_H
#define HOST_TESTING_CALLER_H

#include <cstdint>
#include <optional>

namespace OHOS::Host {

// Makes `token` the process's full token id; nothing makes it the environment's again. The last call wins, whichever
// thread made it.
void SetCaller(std::optional<uint64_t> token);

// Gives the identity back if the last call was this thread's.
void ForgetCallerOfThisThread();

} // namespace OHOS::Host

#endif // HOST_TESTING_CALLER_H
