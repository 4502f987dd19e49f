// One connection to a bus, over which one thread at a time calls the log service.
#ifndef HOST_DBUS_BUS_CONNECTION_H
#define HOST_DBUS_BUS_CONNECTION_H

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "bus_handles.h"

namespace OHOS::Host {

// What a call that breaks off returns in the place of the service's code.
enum IpcCode : int32_t {
    IPC_OK = 0,
    IPC_SERVICE_GONE = 1001,
    IPC_TIMEOUT = 1002,
    IPC_ERROR_ANSWER = 1003,
    IPC_WRONG_TYPES = 1004,
};

using Deadline = std::chrono::steady_clock::time_point;

// A connection has no thread of its own: it reads what the bus has sent only while one of its functions runs. Any
// thread may use it, but only one at a time. Nothing here throws or takes longer than the deadline given.
class BusConnection {
public:
    // A connection to `bus`, which is "session", "system" or an address; null when there is none to be had in time.
    static std::unique_ptr<BusConnection> Open(const std::string& bus, Deadline deadline);

    // Takes in what the bus has sent so far, without waiting. False when the connection is closed: it is of no use
    // then.
    bool Update();

    // True when somebody owns the service's name. If nobody does, the bus is asked to start the service.
    bool FindService(Deadline deadline);

    // A call of the service's `method`, for its arguments to be appended; null when it cannot be made.
    BusMessage NewCall(const char* method) const;

    // Sends `call` and waits for the answer, which is put into `answer` if the result is IPC_OK.
    IpcCode Call(const BusMessage& call, Deadline deadline, BusMessage& answer);

private:
    explicit BusConnection(sd_bus* bus) : bus_(bus) {}

    // Takes in one message of the bus, if there is one. False when nothing is left to be done without waiting.
    bool Step(BusMessage& message);
    void Wait(Deadline deadline);
    bool WatchService(Deadline deadline);
    // Calls a method of the bus itself.
    BusMessage NewBusCall(const char* method) const;

    BusHandle bus_;
    bool closed_ = false;
    // Whether the service's name has an owner, as far as the bus's notices have been taken in.
    bool owned_ = false;
};

} // namespace OHOS::Host

#endif // HOST_DBUS_BUS_CONNECTION_H
