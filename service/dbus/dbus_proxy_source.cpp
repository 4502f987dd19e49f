// The one function of libzelk_dbus; the client library looks it up by name.
#include <chrono>
#include <memory>
#include <new>
#include <string>

#include "log_service_proxy.h"
#include "service/api/dbus_library.h"

namespace {

// A little less than the promised 25 s, which include the way back to the caller.
constexpr std::chrono::milliseconds LIMIT(24800);

} // namespace

extern "C" __attribute__((visibility("default"))) void
ZelkDbusProxySource(const std::string& address, void (*onInvalid)(), OHOS::Host::ProxySource& source)
{
    try {
        source = [pool = std::make_shared<OHOS::Host::BusPool>(address, onInvalid)](std::string& whyNot) {
            return OHOS::Host::LogServiceProxy::Find(pool, LIMIT, whyNot);
        };
    } catch (const std::bad_alloc&) {
        source = nullptr;
    }
}
