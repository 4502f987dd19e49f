// The log service's names on D-Bus, and the bus's own.
#ifndef SERVICE_DBUS_DBUS_NAMES_H
#define SERVICE_DBUS_DBUS_NAMES_H

namespace OHOS::Host {

constexpr const char* SERVICE_NAME = "dev.zelk.LogService";
constexpr const char* SERVICE_PATH = "/dev/zelk/LogService";
constexpr const char* SERVICE_INTERFACE = "dev.zelk.LogService1";

constexpr const char* BUS_NAME = "org.freedesktop.DBus"; // Of its interface, too.
constexpr const char* BUS_PATH = "/org/freedesktop/DBus";

} // namespace OHOS::Host

#endif // SERVICE_DBUS_DBUS_NAMES_H
