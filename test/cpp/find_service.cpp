// Exits with 0 when the log service that the environment names answers, with 1 when there is none. With an argument,
// no file descriptors are left during the first two tries.
#include <cstdlib>
#include <sys/resource.h>

#include "zelk_service_api/client.h"

namespace {

bool g_isLoaded = false;

bool IsServed()
{
    const OHOS::sptr<OHOS::HiviewDFX::IZelkLogService> proxy = OHOS::HiviewDFX::Client().GetProxy();
    bool on = false;
    return proxy && proxy->GetModemLogStatus(on) == 0;
}

} // namespace

// libsystemd reads the environment with this.
extern "C" __attribute__((visibility("default"))) char* secure_getenv(const char* name) noexcept
{
    if (g_isLoaded) {
        std::abort();
    }
    return std::getenv(name);
}

int main(int argc, char**)
{
    g_isLoaded = true;
    for (const char* name :
         {"ZELK_LOG_SERVICE", "DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS", "XDG_RUNTIME_DIR"}) {
        setenv(name, "changed", 1);
    }
    if (argc > 1) {
        OHOS::HiviewDFX::Client().OnRemoteDied(
            nullptr); // A sanitizer needs descriptors to check a class the first time.
        rlimit usual = {};
        getrlimit(RLIMIT_NOFILE, &usual);
        const rlimit none = {0, usual.rlim_max};
        setrlimit(RLIMIT_NOFILE, &none);
        if (IsServed() || IsServed()) {
            return EXIT_FAILURE;
        }
        setrlimit(RLIMIT_NOFILE, &usual);
    }
    return IsServed() && IsServed() ? EXIT_SUCCESS : EXIT_FAILURE;
}
