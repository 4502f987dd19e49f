// A log service as an object on D-Bus.
#ifndef HOST_DBUS_LOG_SERVICE_OBJECT_H
#define HOST_DBUS_LOG_SERVICE_OBJECT_H

#include <cstdint>
#include <functional>
#include <memory>

#include <sdbus-c++/IConnection.h>
#include <sdbus-c++/IObject.h>

#include "zelk_service_api/i_zelk_log_service.h"

namespace OHOS::Host {

// Told of each call that was served: the method's name and the code that was answered.
using CallObserver = std::function<void(const char* method, int32_t code)>;

// Puts `service` at its path on `bus`, to be called in the threads that process the bus's messages. It is offered for
// as long as the returned object lives. Throws sdbus::Error.
std::unique_ptr<sdbus::IObject> OfferLogService(sdbus::IConnection& bus, HiviewDFX::IZelkLogService& service,
                                                const CallObserver& observer);

} // namespace OHOS::Host

#endif // HOST_DBUS_LOG_SERVICE_OBJECT_H
