// Desktop only: gives the process another identity, for tests.
#ifndef HOST_IPC_CALLING_TOKEN_H
#define HOST_IPC_CALLING_TOKEN_H

#include <cstdint>
#include <optional>

namespace OHOS::Host {

// From now on IPCSkeleton::GetCallingFullTokenID returns `token` on every thread, regardless of OHOS_FULL_TOKEN_ID.
// Without a value the variable is used again. Any thread may call this.
__attribute__((visibility("default"))) void SetCallingToken(std::optional<uint64_t> token);

} // namespace OHOS::Host

#endif // HOST_IPC_CALLING_TOKEN_H
