// A log service as an object on D-Bus.
#ifndef SERVICE_DBUS_LOG_SERVICE_ADAPTOR_H
#define SERVICE_DBUS_LOG_SERVICE_ADAPTOR_H

#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>

#include "bus_handles.h"
#include "service/api/operations.h"
#include "service/reference/switches.h"

namespace OHOS::Host {

// Called after each call that was served, with the method's name and the code that was answered.
using CallObserver = std::function<void(const char* method, int32_t code)>;

// Tells what the service has switched on now.
using SwitchesReader = std::function<Switches()>;

// Exports a log service, whose switches are properties. Its calls are served in the thread that processes the bus's
// messages. Nothing is thrown there: a call that runs out of memory is answered with a D-Bus error. After the answer to
// a call that changed a switch, those who watch the properties are told so, over the same connection.
class LogServiceAdaptor {
public:
    LogServiceAdaptor(HiviewDFX::IZelkLogService& service, SwitchesReader readSwitches, CallObserver observer)
        : service_(service), readSwitches_(std::move(readSwitches)), observer_(std::move(observer))
    {
    }
    LogServiceAdaptor(const LogServiceAdaptor&) = delete;
    LogServiceAdaptor& operator=(const LogServiceAdaptor&) = delete;

    // Offers the service at its path on `bus` for as long as this object lives. Returns a negative errno on failure.
    int Export(sd_bus* bus);

    // Serves `call`, whose method stands for the operation. Returns what a handler of sd-bus must return.
    int Serve(const Operation& operation, sd_bus_message* call);

    // Appends the value of the property of this name to `reply`. Returns a negative errno on failure.
    int ReadProperty(std::string_view name, sd_bus_message* reply) const;

private:
    HiviewDFX::IZelkLogService& service_;
    const SwitchesReader readSwitches_;
    const CallObserver observer_;
    BusSlot slot_;
};

} // namespace OHOS::Host

#endif // SERVICE_DBUS_LOG_SERVICE_ADAPTOR_H
