// One connection to a bus, over which one thread at a time calls the log service.
#ifndef SERVICE_DBUS_BUS_CONNECTION_H
#define SERVICE_DBUS_BUS_CONNECTION_H

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "bus_handles.h"
#include "host/utils/deadline.h"
#include "service/api/ipc_code.h"

namespace OHOS::Host {

// The code of a call for which a function of this folder or of sd-bus returned `error`, a negative errno.
IpcCode CodeOfError(int error);

// A connection has no thread of its own: messages are processed only while one of its functions runs. Any thread may
// use it, but only one at a time. No function runs past its deadline, whatever arrives.
//
// Only messages from the bus or from the owner of the service's name are accepted; calls are sent to that owner's
// unique name. Messages from any other peer are dropped.
class BusConnection {
public:
    // Connects to the bus at `address`. Returns 0, or a negative errno and no connection: -EINVAL when libsystemd
    // refuses the address, -ETIMEDOUT when the deadline passed.
    static int Open(const std::string& address, Deadline deadline, std::unique_ptr<BusConnection>& connection);

    // Processes the messages that have arrived so far, without waiting for more. Returns a negative errno when the
    // connection can no longer be used, and -ETIMEDOUT when the deadline passed before all were processed.
    int ProcessPending(Deadline deadline);

    // True when the service's name has an owner. If it has none, the bus is asked to start the service. When that fails
    // too, `whyNot` says why.
    bool EnsureService(Deadline deadline, std::string& whyNot);

    // A call of the service's `method`, to which the arguments are to be appended; null when it cannot be created.
    // Valid for this connection and as long as the service's name keeps its owner.
    BusMessage NewCall(const char* method) const;

    // Sends `call`, whose answer will have this `cookie`. Returns a negative errno when it cannot be sent.
    int Send(const BusMessage& call, uint64_t& cookie);

    // Waits for the answer to `call` and stores it in `answer`; if the result is not IPC_OK, `answer` is an error or
    // null. When the service's name passes to another connection meanwhile, the answer is awaited for one more second:
    // a service that had to give up its connection cannot say so.
    IpcCode Receive(const BusMessage& call, uint64_t cookie, Deadline deadline, BusMessage& answer);

private:
    explicit BusConnection(BusHandle bus) : bus_(std::move(bus)) {}

    // Waits until the bus has accepted this connection, then follows the owner of the service's name.
    int Start(Deadline deadline);
    int WatchService(Deadline deadline);
    void QueryOwner(Deadline deadline);

    // Lets sd-bus take one step: read a message, for example, which is stored in `message` unless sd-bus answers it
    // itself. False when there is nothing left to do without waiting.
    bool ProcessOne(BusMessage& message);
    // Updates the owner of the service's name if `message` is a notice about it.
    void FollowOwner(const BusMessage& message);
    // Whether `call` went to an owner of the service's name that another has since replaced.
    bool HasPassedFrom(const BusMessage& call) const;
    void Wait(Deadline deadline);

    // A call of a method of the bus itself.
    BusMessage NewBusCall(const char* method) const;
    IpcCode CallBus(const BusMessage& call, Deadline deadline, BusMessage& answer);

    BusHandle bus_;
    // Why the connection can no longer be used, a negative errno; 0 while it can.
    int error_ = 0;
    // The unique name of the service's owner; empty while it has none, as far as the bus's notices have been processed.
    std::string owner_;
};

} // namespace OHOS::Host

#endif // SERVICE_DBUS_BUS_CONNECTION_H
