// The log service's names on D-Bus.
#ifndef HOST_DBUS_DBUS_NAMES_H
#define HOST_DBUS_DBUS_NAMES_H

namespace OHOS::Host {

constexpr const char* SERVICE_NAME = "dev.zelk.LogService";
constexpr const char* SERVICE_PATH = "/dev/zelk/LogService";
constexpr const char* SERVICE_INTERFACE = "dev.zelk.LogService1";

} // namespace OHOS::Host

#endif // HOST_DBUS_DBUS_NAMES_H
