// The process that serves the reference log service on D-Bus.
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <exception>
#include <iostream>
#include <string>
#include <sys/eventfd.h>
#include <sys/time.h>
#include <unistd.h>
#include <vector>

#include "bus_server.h"
#include "dbus_names.h"
#include "service/reference/reference_service.h"
#include "service_options.h"

namespace {

using namespace OHOS::Host;

constexpr int STATUS_FAILED = 1;
constexpr int STATUS_USAGE = 2;

void Say(const std::string& text)
{
    std::cerr << "zelk-log-service: " + text + "\n";
}

// After SIGTERM or SIGINT the process may go on for this long, whatever it waits for.
constexpr itimerval PATIENCE = {{}, {0, 800'000}};

// Whether SIGTERM or SIGINT has arrived, and an eventfd that becomes readable then.
volatile std::sig_atomic_t g_isEnding = 0;
int g_endRequested = -1;

void OnEndSignal(int)
{
    // A second signal neither delays the end nor interrupts it.
    std::signal(SIGTERM, SIG_IGN);
    std::signal(SIGINT, SIG_IGN);
    g_isEnding = 1;
    const int callersError = errno;
    const uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(g_endRequested, &one, sizeof(one));
    setitimer(ITIMER_REAL, &PATIENCE, nullptr);
    errno = callersError;
}

// The call being served, or the bus, kept the process from ending in time.
void OnPatienceLost(int)
{
    _exit(0);
}

void HandleSignals()
{
    g_endRequested = eventfd(0, EFD_CLOEXEC);
    struct sigaction action = {};
    action.sa_handler = OnEndSignal;
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGINT, &action, nullptr);
    action.sa_handler = OnPatienceLost;
    sigaction(SIGALRM, &action, nullptr);
    // No one may be reading the output; callers must still get their answers.
    action.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &action, nullptr);
}

void Run(const ServiceOptions& options)
{
    ReferenceService service;
    const auto readSwitches = [&service] {
        return service.State();
    };
    BusServer server(options.bus, service, readSwitches, [&options](const char* method, int32_t code) {
        if (options.verbose) {
            Say(std::string(method) + " answers code " + std::to_string(code));
        }
    });
    if (options.verbose) {
        Say(std::string("serves ") + SERVICE_NAME + " on " + options.bus);
    }
    server.ServeUntil(g_endRequested);
    server.ReleaseName();
}

} // namespace

int main(int argc, char** argv)
{
    HandleSignals();
    std::string error;
    const ServiceOptions options = ParseServiceOptions(std::vector<std::string>(argv + 1, argv + argc), error);
    if (!error.empty()) {
        Say(error + "; try --help");
        return STATUS_USAGE;
    }
    if (options.help) {
        std::cout << SERVICE_USAGE;
        return 0;
    }
    try {
        Run(options);
    } catch (const std::exception& failure) {
        if (g_isEnding != 0) {
            return 0; // The signal interrupted a call to the bus.
        }
        Say(std::string("cannot serve ") + SERVICE_NAME + " on " + options.bus + ": " + failure.what());
        return STATUS_FAILED;
    }
    return 0;
}
