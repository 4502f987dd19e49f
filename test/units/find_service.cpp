// Exits with 0 when the log service that the environment names answers, with 1 when there is none. With an argument,
// no file descriptors are left during the first two tries. It looks for the service as a worker does, on a thread that
// may not read the environment.
#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <sys/resource.h>
#include <thread>

#include "zelk_service_api/client.h"

namespace {

thread_local bool t_isWorker = false;

// Whether it is, with at most this many file descriptors.
bool IsServed(rlim_t descriptors)
{
    rlimit usual = {};
    getrlimit(RLIMIT_NOFILE, &usual);
    const rlimit limit = {std::min(descriptors, usual.rlim_cur), usual.rlim_max};
    setrlimit(RLIMIT_NOFILE, &limit);
    const OHOS::sptr<OHOS::HiviewDFX::IZelkLogService> proxy = OHOS::HiviewDFX::Client().GetProxy();
    bool on = false;
    const bool isServed = proxy && proxy->GetModemLogStatus(on) == 0;
    setrlimit(RLIMIT_NOFILE, &usual);
    return isServed;
}

} // namespace

// libsystemd reads the environment with this. Newer releases read one variable once per process, at the first message,
// and cannot be kept from it.
extern "C" __attribute__((visibility("default"))) char* secure_getenv(const char* name) noexcept
{
    if (t_isWorker && std::string_view(name) != "SYSTEMD_ENABLE_LOG_CONTEXT") {
        std::abort();
    }
    return std::getenv(name);
}

int main(int argc, char**)
{
    for (const char* name :
         {"ZELK_LOG_SERVICE", "DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS", "XDG_RUNTIME_DIR"}) {
        setenv(name, "changed", 1);
    }
    OHOS::HiviewDFX::Client().OnRemoteDied({}); // A sanitizer needs descriptors to check a class the first time.
    bool isServed = false;
    std::thread([&] {
        t_isWorker = true;
        const bool isServedWithout = argc > 1 && (IsServed(0) || IsServed(0)); // NOLINT(misc-redundant-expression)
        isServed = !isServedWithout && IsServed(RLIM_INFINITY) && IsServed(RLIM_INFINITY);
        t_isWorker = false;
    }).join();
    return isServed ? EXIT_SUCCESS : EXIT_FAILURE;
}
