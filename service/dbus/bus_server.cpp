#include "bus_server.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <poll.h>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include "dbus_names.h"
#include "host/utils/deadline.h"

namespace OHOS::Host {

namespace {

using std::chrono::duration_cast;
using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

// How long the bus may take to accept an answer, before and after the end was requested.
constexpr milliseconds PATIENCE(3000);
constexpr milliseconds LAST_PATIENCE(200);

// Between attempts to reach a bus that does not react.
constexpr milliseconds RETRY_INTERVAL(100);

// A probe finds answers that were sent at most this long ago; the rest of the time is for its own answer.
constexpr milliseconds PROBE_INTERVAL(1000);
constexpr milliseconds PROBE_PATIENCE = PATIENCE - PROBE_INTERVAL;

constexpr const char* BUS_LOST = "the bus was lost";

// `result` of a function that returns a negative errno when it fails. Throws std::system_error then.
int Checked(int result, const char* failure)
{
    if (result < 0) {
        throw std::system_error(-result, std::generic_category(), failure);
    }
    return result;
}

BusHandle Open(const std::string& name)
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

// Waits as poll() does, forever when `limit` is negative, but a signal is not a failure.
void Poll(std::array<pollfd, 2>& descriptors, milliseconds limit)
{
    if (poll(descriptors.data(), descriptors.size(), static_cast<int>(limit.count())) < 0) {
        Checked(errno == EINTR ? 0 : -errno, "cannot wait for the bus");
        descriptors[0].revents = descriptors[1].revents = 0;
    }
}

} // namespace

BusServer::BusServer(std::string bus, HiviewDFX::IZelkLogService& service, SwitchesReader readSwitches,
                     CallObserver observer)
    : name_(std::move(bus)), adaptor_(service, std::move(readSwitches), std::move(observer))
{
    Connect(0);
}

void BusServer::Connect(uint64_t flags)
{
    BusHandle bus = Open(name_);
    sd_bus_slot* slot = nullptr;
    Checked(sd_bus_add_filter(bus.get(), &slot, OnMessage, this), "cannot follow the name");
    messages_.reset(slot);
    Checked(adaptor_.Export(bus.get()), "cannot export the service");
    const int result = sd_bus_request_name(bus.get(), SERVICE_NAME, flags | SD_BUS_NAME_ALLOW_REPLACEMENT);
    Checked(result, result == -EEXIST ? "another process serves it already" : "cannot own the name");
    // The old connection is closed only now: the bus, which reads nothing from it, would not have noticed, and the name
    // would have stayed taken.
    sign_.reset();
    hasServed_ = false;
    bus_ = std::move(bus);
}

void BusServer::TakeOver()
{
    while (true) {
        try {
            return Connect(SD_BUS_NAME_REPLACE_EXISTING);
        } catch (const std::system_error& error) {
            // A bus that is stopped may be continued: it takes a connection, and then lets it wait or break off.
            if (error.code() != std::errc::timed_out && error.code() != std::errc::not_connected &&
                error.code() != std::errc::connection_reset) {
                throw;
            }
        }
        std::this_thread::sleep_for(RETRY_INTERVAL);
    }
}

void BusServer::ServeUntil(int end)
{
    while (true) {
        const bool more = Checked(sd_bus_process(bus_.get(), nullptr), BUS_LOST) > 0;
        if (isNameLost_) {
            throw std::runtime_error("another process has taken the name");
        }
        // Each answer is sent before the next call is served: answers that pile up could use all memory.
        const bool isTaken = Flush(end) && (more || Probe());
        if (!isTaken) {
            TakeOver();
        }
        std::array<pollfd, 2> descriptors = {pollfd{sd_bus_get_fd(bus_.get()), POLLIN, 0}, pollfd{end, POLLIN, 0}};
        Poll(descriptors, more || !isTaken ? milliseconds::zero() : WaitTime());
        if (descriptors[1].revents != 0) {
            return;
        }
    }
}

void BusServer::ReleaseName()
{
    sd_bus_set_method_call_timeout(bus_.get(), duration_cast<microseconds>(LAST_PATIENCE).count());
    if (sd_bus_release_name(bus_.get(), SERVICE_NAME) == -ETIMEDOUT) {
        // Without this the bus would keep the name until it notices that the process has ended.
        TakeOver();
        sd_bus_release_name(bus_.get(), SERVICE_NAME);
    }
}

bool BusServer::HasUnsent() const
{
    return (Checked(sd_bus_get_events(bus_.get()), BUS_LOST) & POLLOUT) != 0;
}

// sd_bus_flush() has no time limit.
bool BusServer::Flush(int end)
{
    if (!HasUnsent()) {
        return true;
    }
    Deadline deadline = steady_clock::now() + PATIENCE;
    std::array<pollfd, 2> descriptors = {pollfd{sd_bus_get_fd(bus_.get()), POLLOUT, 0}, pollfd{end, POLLIN, 0}};
    while (HasUnsent()) {
        if (steady_clock::now() >= deadline) {
            return false;
        }
        Poll(descriptors, TimeUntil<milliseconds>(deadline));
        if (descriptors[1].revents != 0) {
            deadline = std::min(deadline, steady_clock::now() + LAST_PATIENCE);
            descriptors[1] = {-1, 0, 0};
        }
        if (descriptors[0].revents != 0) {
            SendSome();
        }
    }
    return true;
}

// sd_bus_process() takes one step of several: it sends, tells tracking objects that they are empty, or reads and serves
// a call, in this order. An answer of which only a part could be sent does not count as a step. A new tracking object
// is empty, so no call is read.
void BusServer::SendSome()
{
    sd_bus_track* track = nullptr;
    const auto onEmpty = [](sd_bus_track*, void*) {
        return 0;
    };
    Checked(sd_bus_track_new(bus_.get(), &track, onEmpty, nullptr), "cannot send");
    const int result = sd_bus_process(bus_.get(), nullptr);
    sd_bus_track_unref(track);
    Checked(result, BUS_LOST);
}

bool BusServer::Probe()
{
    const auto now = steady_clock::now();
    if (sign_ != nullptr) {
        return now < probed_ + PROBE_PATIENCE;
    }
    if (hasServed_ && now >= probed_ + PROBE_INTERVAL) {
        sd_bus_slot* slot = nullptr;
        Checked(sd_bus_call_method_async(bus_.get(), &slot, BUS_NAME, BUS_PATH, "org.freedesktop.DBus.Peer", "Ping",
                                         OnSign, this, nullptr),
                BUS_LOST);
        sign_.reset(slot);
        probed_ = now;
        hasServed_ = false;
    }
    return true;
}

milliseconds BusServer::WaitTime() const
{
    if (sign_ != nullptr) {
        return TimeUntil<milliseconds>(probed_ + PROBE_PATIENCE);
    }
    return hasServed_ ? TimeUntil<milliseconds>(probed_ + PROBE_INTERVAL) : milliseconds(-1);
}

int BusServer::OnSign(sd_bus_message*, void* server, sd_bus_error*)
{
    static_cast<BusServer*>(server)->sign_.reset();
    return 1;
}

int BusServer::OnMessage(sd_bus_message* message, void* object, sd_bus_error*)
{
    auto* const server = static_cast<BusServer*>(object);
    const char* sender = sd_bus_message_get_sender(message);
    const char* name = nullptr;
    if (sd_bus_message_is_method_call(message, nullptr, nullptr) > 0) {
        server->hasServed_ = true;
    } else if (sd_bus_message_is_signal(message, BUS_NAME, "NameLost") > 0 && sender != nullptr &&
               std::string_view(sender) == BUS_NAME && sd_bus_message_read(message, "s", &name) > 0 &&
               std::string_view(name) == SERVICE_NAME) {
        server->isNameLost_ = true;
    }
    return 0; // The message goes on to its own handler.
}

} // namespace OHOS::Host
