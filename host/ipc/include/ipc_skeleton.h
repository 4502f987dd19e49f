// The caller's identity, as on the platform.
#ifndef HOST_IPC_IPC_SKELETON_H
#define HOST_IPC_IPC_SKELETON_H

#include <cstdint>

namespace OHOS {

class __attribute__((visibility("default"))) IPCSkeleton {
public:
    // The full token id of the caller. On a desktop: the value of the environment variable OHOS_FULL_TOKEN_ID, a system
    // application's id when it is unset or empty, and 0, which has no rights, when it is not a 64-bit number. It is
    // read when the library is loaded and on every call on the process's first thread; other threads get what was read
    // last.
    static uint64_t GetCallingFullTokenID();
};

} // namespace OHOS

#endif // HOST_IPC_IPC_SKELETON_H
