// The service's side of a bus: it owns the log service's name there and serves the calls.
#ifndef SERVICE_DBUS_BUS_SERVER_H
#define SERVICE_DBUS_BUS_SERVER_H

#include <chrono>
#include <cstdint>
#include <string>

#include "bus_handles.h"
#include "log_service_adaptor.h"

namespace OHOS::Host {

// Everything runs in the thread that calls these functions. They throw std::runtime_error, with the reason, when the
// service cannot, or can no longer, be served.
//
// The bus counts the answers that its clients have not read against the service's connection, and reads no more from
// that connection once they reach a limit. A client that reads nothing could stop the service for all others in this
// way. A connection from which the bus takes nothing for 3 s is therefore given up, with the answers in it: a new one
// takes the name over, and the service's state is kept. To allow this, the name is owned so that it can be taken, by
// anyone whom the bus lets own it. A server whose name was taken by somebody else stops.
class BusServer {
public:
    // Connects to `bus`, which is "session", "system" or an address, and owns the name there if nobody else does.
    BusServer(std::string bus, HiviewDFX::IZelkLogService& service, SwitchesReader readSwitches, CallObserver observer);
    BusServer(const BusServer&) = delete;
    BusServer& operator=(const BusServer&) = delete;

    // Serves calls one at a time until `end`, a file descriptor, is readable. Callers that never pause, or that
    // read no answers, cannot delay that.
    void ServeUntil(int end);

    // Gives the name back. Waits for the bus, so that the service cannot be found afterwards.
    void ReleaseName();

private:
    // Connects and owns the name. `flags` are those of sd_bus_request_name.
    void Connect(uint64_t flags);
    // The same over a new connection, in place of the one from which the bus takes nothing.
    void TakeOver();

    // Sends what is left of an answer. Returns false when the bus did not take it in time.
    bool Flush(int end);
    bool HasUnsent() const;
    // Sends as much as the bus takes now, and serves no call.
    void SendSome();

    // While calls are served, the bus is asked for a sign of life now and then, which it gives after it has taken what
    // was sent before. To be called when nothing is left to read. Returns false when the sign is overdue.
    bool Probe();
    // How long nothing has to be done unless something arrives, in the form that poll() takes: negative is forever.
    std::chrono::milliseconds WaitTime() const;

    static int OnMessage(sd_bus_message* message, void* server, sd_bus_error* error);
    static int OnSign(sd_bus_message* message, void* server, sd_bus_error* error);

    const std::string name_; // Of the bus.
    BusHandle bus_;
    BusSlot messages_; // Calls OnMessage.
    LogServiceAdaptor adaptor_;
    bool isNameLost_ = false;
    BusSlot sign_;                                 // Calls OnSign; null while no sign is awaited.
    std::chrono::steady_clock::time_point probed_; // When the last one was asked for.
    bool hasServed_ = false;                       // Since then.
};

} // namespace OHOS::Host

#endif // SERVICE_DBUS_BUS_SERVER_H
