// Opens libzelk_dbus.so, which only those pay for who reach the log service over D-Bus.
#ifndef HOST_SERVICE_DBUS_LIBRARY_H
#define HOST_SERVICE_DBUS_LIBRARY_H

#include <string>

#include "zelk_service_api/proxy_source.h"

namespace OHOS::Host {

// The function that libzelk_dbus.so exports under this name sets `source` to the proxies of the log service on the bus
// at `address`; it stays empty when memory is short. It connects to nothing by itself. `onInvalid` is called, on any
// thread, each time a proxy is asked for and libsystemd refuses the address.
constexpr const char* DBUS_SOURCE_FUNCTION = "ZelkDbusProxySource";
using DbusSourceFunction = void (*)(const std::string& address, void (*onInvalid)(), ProxySource& source);

// The source that the library gives; the library is looked for beside this one. Empty, with `error` saying why, when it
// cannot be opened. The library stays open for the life of the process.
ProxySource OpenDbusLibrary(const std::string& address, void (*onInvalid)(), std::string& error);

} // namespace OHOS::Host

#endif // HOST_SERVICE_DBUS_LIBRARY_H
