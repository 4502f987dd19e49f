// A log service as an object on D-Bus.
#ifndef HOST_DBUS_LOG_SERVICE_ADAPTOR_H
#define HOST_DBUS_LOG_SERVICE_ADAPTOR_H

#include <cstdint>
#include <functional>

#include "bus_handles.h"
#include "zelk_service_api/i_zelk_log_service.h"

namespace OHOS::Host {

// Told of each call that was served: the method's name and the code that was answered.
using CallObserver = std::function<void(const char* method, int32_t code)>;

// Exports a log service. Its calls are served in the thread that processes the bus's messages, and nothing is thrown
// into that: a call for which memory is short is answered with a D-Bus error.
class LogServiceAdaptor {
public:
    LogServiceAdaptor(HiviewDFX::IZelkLogService& service, CallObserver observer)
        : service_(service), observer_(std::move(observer))
    {
    }
    LogServiceAdaptor(const LogServiceAdaptor&) = delete;
    LogServiceAdaptor& operator=(const LogServiceAdaptor&) = delete;

    // Offers the service at its path on `bus` for as long as this object lives. Gives a negative errno if it cannot.
    int Export(sd_bus* bus);

    // Serves `call`, of a method whose arguments and answer are those of OPERATION, a member function of the service or
    // a function that takes it first; the answer comes last. Gives what a handler of sd-bus has to.
    template <auto OPERATION>
    int Serve(sd_bus_message* call);

private:
    HiviewDFX::IZelkLogService& service_;
    const CallObserver observer_;
    BusSlot slot_;
};

} // namespace OHOS::Host

#endif // HOST_DBUS_LOG_SERVICE_ADAPTOR_H
