// Opens libzelk_dbus, so that only programs that reach the log service over D-Bus pay for it.
#ifndef SERVICE_API_DBUS_LIBRARY_H
#define SERVICE_API_DBUS_LIBRARY_H

#include <string>

#include "proxy_source.h"

namespace OHOS::Host {

// The function that libzelk_dbus exports under this name sets `source` to the proxies of the log service on the bus
// at `address`; it stays empty when memory runs out. It does not connect. `onInvalid` is called, on any thread, each
// time a proxy is asked for and libsystemd refuses the address.
constexpr const char* DBUS_SOURCE_FUNCTION = "ZelkDbusProxySource";
using DbusSourceFunction = void (*)(const std::string& address, void (*onInvalid)(), ProxySource& source);

// The source that the library returns; it must be in the same folder as this library. Empty, with the reason in
// `error`, when the library cannot be opened. It stays open for the life of the process.
ProxySource OpenDbusLibrary(const std::string& address, void (*onInvalid)(), std::string& error);

} // namespace OHOS::Host

#endif // SERVICE_API_DBUS_LIBRARY_H
