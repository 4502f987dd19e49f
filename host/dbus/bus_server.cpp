#include "bus_server.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <poll.h>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

#include "dbus_names.h"

namespace OHOS::Host {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// How long the bus may take to accept an answer: usually, and when the end is requested meanwhile.
constexpr std::chrono::seconds PATIENCE(3);
constexpr milliseconds LAST_PATIENCE(200);

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

// As poll() does, for ever when `limit` is negative, but a signal is no failure.
void Poll(std::array<pollfd, 2>& descriptors, milliseconds limit)
{
    if (poll(descriptors.data(), descriptors.size(), static_cast<int>(limit.count())) < 0) {
        Checked(errno == EINTR ? 0 : -errno, "cannot wait for the bus");
        descriptors[0].revents = descriptors[1].revents = 0;
    }
}

} // namespace

BusServer::BusServer(std::string bus, HiviewDFX::IZelkLogService& service, CallObserver observer)
    : name_(std::move(bus)), adaptor_(service, std::move(observer))
{
    Connect(0);
}

void BusServer::Connect(uint64_t flags)
{
    BusHandle bus = Open(name_);
    sd_bus_slot* slot = nullptr;
    Checked(sd_bus_add_filter(bus.get(), &slot, OnMessage, this), "cannot follow the name");
    lossNotice_.reset(slot);
    Checked(adaptor_.Export(bus.get()), "cannot export the service");
    const int result = sd_bus_request_name(bus.get(), SERVICE_NAME, flags | SD_BUS_NAME_ALLOW_REPLACEMENT);
    Checked(result, result == -EEXIST ? "another process serves it already" : "cannot own the name");
    // Only now is the old connection closed, with the answers in it. The bus, which reads nothing from it, would not
    // notice that, and the name would stay taken.
    bus_ = std::move(bus);
}

void BusServer::ServeUntil(int end)
{
    while (true) {
        const bool more = Checked(sd_bus_process(bus_.get(), nullptr), BUS_LOST) > 0;
        if (isNameLost_) {
            throw std::runtime_error("another process has taken the name");
        }
        // Each answer is sent before the next call is served: answers that pile up could use all memory.
        if (!Flush(end)) {
            Connect(SD_BUS_NAME_REPLACE_EXISTING);
        }
        std::array<pollfd, 2> descriptors = {pollfd{sd_bus_get_fd(bus_.get()), POLLIN, 0}, pollfd{end, POLLIN, 0}};
        Poll(descriptors, milliseconds(more ? 0 : -1));
        if (descriptors[1].revents != 0) {
            return;
        }
    }
}

void BusServer::ReleaseName()
{
    sd_bus_release_name(bus_.get(), SERVICE_NAME);
}

bool BusServer::HasUnsent() const
{
    return (Checked(sd_bus_get_events(bus_.get()), BUS_LOST) & POLLOUT) != 0;
}

// sd_bus_flush() has no limit of time.
bool BusServer::Flush(int end)
{
    if (!HasUnsent()) {
        return true;
    }
    steady_clock::time_point deadline = steady_clock::now() + PATIENCE;
    std::array<pollfd, 2> descriptors = {pollfd{sd_bus_get_fd(bus_.get()), POLLOUT, 0}, pollfd{end, POLLIN, 0}};
    while (HasUnsent()) {
        const steady_clock::time_point now = steady_clock::now();
        if (now >= deadline) {
            return false;
        }
        Poll(descriptors, std::chrono::ceil<milliseconds>(deadline - now));
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
// a call, in this order. An answer of which only a part could be sent does not count as a step. A new tracking object is
// empty, and so no call is read.
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

int BusServer::OnMessage(sd_bus_message* message, void* server, sd_bus_error*)
{
    const char* sender = sd_bus_message_get_sender(message);
    const char* name = nullptr;
    if (sd_bus_message_is_signal(message, BUS_NAME, "NameLost") > 0 && sender != nullptr &&
        std::string_view(sender) == BUS_NAME && sd_bus_message_read(message, "s", &name) > 0 &&
        std::string_view(name) == SERVICE_NAME) {
        static_cast<BusServer*>(server)->isNameLost_ = true;
    }
    return 0; // Others see it too.
}

} // namespace OHOS::Host
