// What a call that does not reach the log service, or does not complete, returns instead of the service's code.
#ifndef SERVICE_API_IPC_CODE_H
#define SERVICE_API_IPC_CODE_H

#include <cstdint>

namespace OHOS::Host {

enum IpcCode : int32_t {
    IPC_OK = 0,
    IPC_SERVICE_GONE = 1001,
    IPC_TIMEOUT = 1002,
    IPC_ERROR_ANSWER = 1003, // Also when memory runs out.
    IPC_WRONG_TYPES = 1004,
};

} // namespace OHOS::Host

#endif // SERVICE_API_IPC_CODE_H
