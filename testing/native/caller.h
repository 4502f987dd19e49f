// The identity that a test gives to its process.
#ifndef TESTING_NATIVE_CALLER_H
#define TESTING_NATIVE_CALLER_H

#include <cstdint>
#include <optional>

namespace OHOS::Host {

// Makes `token` the process's full token id; without a value it is that of OHOS_FULL_TOKEN_ID again. The last call
// wins, whichever thread made it.
__attribute__((visibility("default"))) void SetCaller(std::optional<uint64_t> token);

// This thread's calls no longer count: the last call of another thread does, or OHOS_FULL_TOKEN_ID if there is none.
__attribute__((visibility("default"))) void ForgetCallerOfThisThread();

} // namespace OHOS::Host

#endif // TESTING_NATIVE_CALLER_H
