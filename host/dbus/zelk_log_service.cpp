// The process that serves the reference log service on D-Bus.
#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <iostream>
#include <poll.h>
#include <string>
#include <sys/eventfd.h>
#include <sys/time.h>
#include <system_error>
#include <unistd.h>
#include <vector>

#include "bus_handles.h"
#include "dbus_names.h"
#include "log_service_adaptor.h"
#include "reference_service.h"
#include "service_options.h"

namespace {

using namespace OHOS::Host;

constexpr int STATUS_FAILED = 1;
constexpr int STATUS_USAGE = 2;

void Say(const std::string& text)
{
    std::cerr << "zelk-log-service: " + text + "\n";
}

// `result` of a function that returns a negative errno when it fails. Throws std::system_error then.
int Checked(int result, const char* failure)
{
    if (result < 0) {
        throw std::system_error(-result, std::generic_category(), failure);
    }
    return result;
}

// After SIGTERM or SIGINT the process may go on for this long, whatever it waits for.
constexpr itimerval PATIENCE = {{}, {0, 500'000}};

// Whether SIGTERM or SIGINT has arrived, and an eventfd that becomes readable then.
volatile std::sig_atomic_t g_isEnding = 0;
int g_endRequested = -1;

void OnEndSignal(int)
{
    if (g_isEnding != 0) {
        return; // A second signal does not prolong it.
    }
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

BusHandle Connect(const std::string& name)
{
    constexpr std::chrono::seconds LIMIT(25);
    BusHandle bus;
    int result = 0;
    if (name == "session" || name == "system") {
        sd_bus* raw = nullptr;
        result = name == "session" ? sd_bus_open_user(&raw) : sd_bus_open_system(&raw);
        bus.reset(raw);
    } else {
        result = OpenBus(name, LIMIT, bus);
    }
    Checked(result, "cannot reach the bus");
    return bus;
}

void OwnName(sd_bus* bus)
{
    const int result = sd_bus_request_name(bus, SERVICE_NAME, 0);
    Checked(result, result == -EEXIST ? "another process serves it already" : "cannot own the name");
}

// How long to wait for the bus, as poll() takes it.
int WaitTime(sd_bus* bus)
{
    using namespace std::chrono;
    uint64_t until = 0;
    Checked(sd_bus_get_timeout(bus, &until), "the bus was lost");
    if (until == UINT64_MAX) {
        return -1;
    }
    const auto left = ceil<milliseconds>(microseconds(until) - steady_clock::now().time_since_epoch());
    return static_cast<int>(std::max(left, milliseconds::zero()).count());
}

// Serves calls one after the other until the end is requested, which callers that never pause cannot delay. Throws
// std::system_error when the bus goes away.
void Serve(sd_bus* bus)
{
    while (true) {
        const bool more = Checked(sd_bus_process(bus, nullptr), "the bus was lost") > 0;
        // Each answer is sent before the next call is served: answers that pile up could use all memory.
        const int flushed = sd_bus_flush(bus);
        Checked(flushed == -EINTR ? 0 : flushed, "the bus was lost");
        const auto events = static_cast<int16_t>(Checked(sd_bus_get_events(bus), "the bus was lost"));
        std::array<pollfd, 2> descriptors = {pollfd{g_endRequested, POLLIN, 0}, pollfd{sd_bus_get_fd(bus), events, 0}};
        const int ready = poll(descriptors.data(), descriptors.size(), more ? 0 : WaitTime(bus));
        if (ready < 0 && errno != EINTR) {
            Checked(-errno, "cannot wait for the bus");
        }
        if (ready > 0 && descriptors[0].revents != 0) {
            return;
        }
    }
}

void Run(const ServiceOptions& options)
{
    const BusHandle bus = Connect(options.bus);
    ReferenceService service;
    LogServiceAdaptor adaptor(service, [&options](const char* method, int32_t code) {
        if (options.verbose) {
            Say(std::string(method) + " answers code " + std::to_string(code));
        }
    });
    Checked(adaptor.Export(bus.get()), "cannot export the service");
    OwnName(bus.get());
    if (options.verbose) {
        Say(std::string("serves ") + SERVICE_NAME + " on " + options.bus);
    }
    Serve(bus.get());
    // Waits for the bus, so that the service cannot be found after its process has ended.
    sd_bus_release_name(bus.get(), SERVICE_NAME);
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
