// The remote end of an IPC connection, as far as its death notices need it.
#ifndef HOST_IPC_IREMOTE_OBJECT_H
#define HOST_IPC_IREMOTE_OBJECT_H

#include "refbase.h"

namespace OHOS {

class __attribute__((visibility("default"))) IRemoteObject : public virtual RefBase {};

} // namespace OHOS

#endif // HOST_IPC_IREMOTE_OBJECT_H
