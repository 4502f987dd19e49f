// Ends with 0 when the log service that the environment names answers, with 1 when there is none. With an argument,
// file descriptors are used up at the first two tries.
#include <cstdlib>
#include <sys/resource.h>

#include "zelk_service_api/client.h"

namespace {

bool IsServed()
{
    const OHOS::sptr<OHOS::HiviewDFX::IZelkLogService> proxy = OHOS::HiviewDFX::Client().GetProxy();
    bool on = false;
    return proxy && proxy->GetModemLogStatus(on) == 0;
}

} // namespace

int main(int argc, char**)
{
    // The libraries are loaded: what changes from here on is not looked at.
    for (const char* name : {"ZELK_LOG_SERVICE", "DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS",
                             "XDG_RUNTIME_DIR", "SYSTEMD_BUS_TIMEOUT"}) {
        setenv(name, "changed", 1);
    }
    if (argc > 1) {
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
