// The process that serves the reference log service on D-Bus.
#include <array>
#include <cerrno>
#include <csignal>
#include <iostream>
#include <poll.h>
#include <stdexcept>
#include <sys/signalfd.h>

#include <sdbus-c++/sdbus-c++.h>

#include "dbus_names.h"
#include "log_service_object.h"
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

// A descriptor that can be read once SIGTERM or SIGINT has come; the signals do nothing else from now on.
int WatchEndSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signalfd(-1, &signals, SFD_CLOEXEC);
}

std::unique_ptr<sdbus::IConnection> Connect(const std::string& bus)
{
    if (bus == "session") {
        return sdbus::createSessionBusConnection();
    }
    return bus == "system" ? sdbus::createSystemBusConnection() : sdbus::createSessionBusConnectionWithAddress(bus);
}

void OwnName(sdbus::IConnection& bus)
{
    try {
        bus.requestName(SERVICE_NAME);
    } catch (const sdbus::Error& error) {
        if (error.getName() == "org.freedesktop.DBus.Error.FileExists") {
            throw std::runtime_error("another process serves it already");
        }
        throw;
    }
}

// Serves calls one after the other until `endSignals` can be read, which callers without a pause do not keep off.
// Throws sdbus::Error when the bus goes away.
void Serve(sdbus::IConnection& bus, int endSignals)
{
    while (true) {
        const bool more = bus.processPendingRequest();
        const sdbus::IConnection::PollData wanted = bus.getEventLoopPollData();
        std::array<pollfd, 2> descriptors = {pollfd{endSignals, POLLIN, 0}, pollfd{wanted.fd, wanted.events, 0}};
        const int ready = poll(descriptors.data(), descriptors.size(), more ? 0 : wanted.getPollTimeout());
        if (ready < 0 && errno != EINTR) {
            throw sdbus::createError(errno, "cannot wait for the bus");
        }
        if (ready > 0 && descriptors[0].revents != 0) {
            return;
        }
    }
}

void Run(const ServiceOptions& options)
{
    const std::unique_ptr<sdbus::IConnection> bus = Connect(options.bus);
    // Before anybody can find the service. Until here, where a bus may keep it waiting, a signal just ends the process.
    const int endSignals = WatchEndSignals();
    ReferenceService service;
    const auto object = OfferLogService(*bus, service, [&options](const char* method, int32_t code) {
        if (options.verbose) {
            Say(std::string(method) + " answers code " + std::to_string(code));
        }
    });
    OwnName(*bus);
    if (options.verbose) {
        Say(std::string("serves ") + SERVICE_NAME + " on " + options.bus);
    }
    Serve(*bus, endSignals);
    bus->releaseName(SERVICE_NAME);
}

} // namespace

int main(int argc, char** argv)
{
    // Nobody reads what is said here: no reason to leave a caller without an answer.
    std::signal(SIGPIPE, SIG_IGN);
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
        Say(std::string("cannot serve ") + SERVICE_NAME + " on " + options.bus + ": " + failure.what());
        return STATUS_FAILED;
    }
    return 0;
}
