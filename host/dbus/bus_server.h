// The service's side of a bus: it owns the log service's name there and serves the calls.
#ifndef HOST_DBUS_BUS_SERVER_H
#define HOST_DBUS_BUS_SERVER_H

#include <cstdint>
#include <string>

#include "bus_handles.h"
#include "log_service_adaptor.h"

namespace OHOS::Host {

// Everything runs in the thread that calls these functions. They throw std::runtime_error when the service cannot be
// served (any more), with the reason.
//
// The bus counts the answers that its clients have not read against the service's connection, and reads no more from
// that connection when they reach a limit. A client that reads nothing could stop the service for all others in this
// way. An answer that the bus does not take in time is therefore given up, with its connection: a new connection takes
// the name over, and the service's state is kept. For this the name is owned in such a way that it can be taken over,
// by anyone whom the bus lets own it; a server whose name was taken by somebody else ends.
class BusServer {
public:
    // Connects to `bus`, which is "session", "system" or an address, and owns the name there if nobody else does.
    BusServer(std::string bus, HiviewDFX::IZelkLogService& service, CallObserver observer);
    BusServer(const BusServer&) = delete;
    BusServer& operator=(const BusServer&) = delete;

    // Serves calls one after the other until `end`, a file descriptor, is readable, which callers that never pause, or
    // that read no answers, cannot delay.
    void ServeUntil(int end);

    // Gives the name back. Waits for the bus, so that the service cannot be found afterwards.
    void ReleaseName();

private:
    // Connects and owns the name. `flags` are those of sd_bus_request_name.
    void Connect(uint64_t flags);

    // Whether there is an answer, or a part of one, that was not sent yet.
    bool HasUnsent() const;
    // Sends what was not sent yet. Returns false when the bus did not take it in time.
    bool Flush(int end);
    // Sends as much as the bus takes now, and serves no call.
    void SendSome();

    static int OnMessage(sd_bus_message* message, void* server, sd_bus_error* error);

    const std::string name_; // Of the bus.
    bool isNameLost_ = false;
    BusHandle bus_;
    BusSlot lossNotice_;
    LogServiceAdaptor adaptor_;
};

} // namespace OHOS::Host

#endif // HOST_DBUS_BUS_SERVER_H
