// One connection to a bus, over which one thread at a time calls the log service.
#ifndef HOST_DBUS_BUS_CONNECTION_H
#define HOST_DBUS_BUS_CONNECTION_H

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "bus_handles.h"

namespace OHOS::Host {

// What a call that breaks off returns in place of the service's code.
enum IpcCode : int32_t {
    IPC_OK = 0,
    IPC_SERVICE_GONE = 1001,
    IPC_TIMEOUT = 1002,
    IPC_ERROR_ANSWER = 1003, // Also when memory is short.
    IPC_WRONG_TYPES = 1004,
};

// The code of a call for which a function of this folder or of sd-bus gave `error`, a negative errno.
IpcCode CodeOfError(int error);

using Deadline = std::chrono::steady_clock::time_point;

// A connection has no thread of its own: what the bus sends is processed only while one of its functions runs. Any
// thread may use it, but only one at a time. Nothing here takes longer than the deadline given, whatever arrives.
//
// Messages count only if they come from the bus or from the owner of the service's name, to whose unique name calls are
// sent. What any other peer sends is dropped.
class BusConnection {
public:
    // Connects to the bus at `address`. Gives 0, or a negative errno and no connection: -EINVAL when libsystemd refuses
    // the address, -ETIMEDOUT when the deadline passed.
    static int Open(const std::string& address, Deadline deadline, std::unique_ptr<BusConnection>& connection);

    // Processes what the bus has sent so far, without waiting for more. Gives a negative errno when the connection is
    // of no use any more, and -ETIMEDOUT when the deadline passed before all was processed.
    int ProcessPending(Deadline deadline);

    // True when somebody owns the service's name. If nobody does, the bus is asked to start the service.
    bool EnsureService(Deadline deadline);

    // A call of the service's `method`, for its arguments to be appended; null when it cannot be made. Good for this
    // connection and as long as the service has its owner.
    BusMessage NewCall(const char* method) const;

    // Sends `call` and waits for the answer, which is put into `answer`; if the result is not IPC_OK, it is an error or
    // none.
    IpcCode Call(const BusMessage& call, Deadline deadline, BusMessage& answer);

private:
    explicit BusConnection(BusHandle bus) : bus_(std::move(bus)) {}

    // Waits until the bus has greeted this connection, then follows the owner of the service's name.
    int Start(Deadline deadline);
    int WatchService(Deadline deadline);
    void QueryOwner(Deadline deadline);

    // Lets sd-bus do one thing: read a message, for example, which is put into `message` unless sd-bus answers it
    // itself. False when nothing is left to be done without waiting.
    bool ProcessOne(BusMessage& message);
    // Takes over what `message` says about the owner of the service's name, if it does.
    void FollowOwner(const BusMessage& message);
    void Wait(Deadline deadline);

    // A call of a method of the bus itself.
    BusMessage NewBusCall(const char* method) const;

    BusHandle bus_;
    // Why the connection is of no use any more, a negative errno; 0 while it is of use.
    int error_ = 0;
    // The unique name of the service's owner; empty while it has none, as far as the bus's notices have been processed.
    std::string owner_;
};

} // namespace OHOS::Host

#endif // HOST_DBUS_BUS_CONNECTION_H
