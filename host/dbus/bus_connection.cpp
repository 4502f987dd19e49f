#include "bus_connection.h"

#include <array>
#include <string_view>

#include "dbus_names.h"

namespace OHOS::Host {

namespace {

using std::chrono::microseconds;
using std::chrono::steady_clock;

constexpr const char* BUS_NAME = "org.freedesktop.DBus";
constexpr const char* BUS_PATH = "/org/freedesktop/DBus";
constexpr const char* OWNER_NOTICE = "NameOwnerChanged";

int OpenAddress(const std::string& address, sd_bus** bus)
{
    int result = sd_bus_new(bus);
    if (result >= 0) {
        result = sd_bus_set_address(*bus, address.c_str());
    }
    if (result >= 0) {
        result = sd_bus_set_bus_client(*bus, 1);
    }
    return result < 0 ? result : sd_bus_start(*bus);
}

bool SentByBus(const BusMessage& message)
{
    const char* sender = sd_bus_message_get_sender(message.get());
    return sender != nullptr && std::string_view(sender) == BUS_NAME;
}

// The bus answers in the service's place when the latter has died, is not there or cannot be started. An error that the
// service sends itself is an answer, whatever its name.
IpcCode CodeOf(const BusMessage& answer)
{
    const sd_bus_error* error = sd_bus_message_get_error(answer.get());
    if (error == nullptr) {
        return IPC_OK;
    }
    if (!SentByBus(answer)) {
        return IPC_ERROR_ANSWER;
    }
    constexpr std::array<std::string_view, 4> GONE = {SD_BUS_ERROR_NO_REPLY, SD_BUS_ERROR_SERVICE_UNKNOWN,
                                                      SD_BUS_ERROR_NAME_HAS_NO_OWNER, SD_BUS_ERROR_DISCONNECTED};
    constexpr std::string_view NOT_STARTED = "org.freedesktop.DBus.Error.Spawn.";
    const std::string_view name = error->name;
    for (const std::string_view gone : GONE) {
        if (name == gone) {
            return IPC_SERVICE_GONE;
        }
    }
    if (name.substr(0, NOT_STARTED.size()) == NOT_STARTED) {
        return IPC_SERVICE_GONE;
    }
    return name == SD_BUS_ERROR_TIMEOUT || name == "org.freedesktop.DBus.Error.TimedOut" ? IPC_TIMEOUT
                                                                                         : IPC_ERROR_ANSWER;
}

} // namespace

std::unique_ptr<BusConnection> BusConnection::Open(const std::string& bus, Deadline deadline)
{
    sd_bus* raw = nullptr;
    const int result = bus == "session"  ? sd_bus_open_user(&raw)
                       : bus == "system" ? sd_bus_open_system(&raw)
                                         : OpenAddress(bus, &raw);
    std::unique_ptr<BusConnection> connection(new BusConnection(raw));
    if (result < 0) {
        return nullptr;
    }
    while (sd_bus_is_ready(raw) <= 0) {
        if (!connection->Update() || steady_clock::now() >= deadline) {
            return nullptr;
        }
        if (sd_bus_is_ready(raw) <= 0) {
            connection->Wait(deadline);
        }
    }
    return connection->WatchService(deadline) ? std::move(connection) : nullptr;
}

bool BusConnection::Update()
{
    BusMessage message;
    while (Step(message)) {
    }
    return !closed_;
}

bool BusConnection::FindService(Deadline deadline)
{
    if (!owned_) {
        const BusMessage call = NewBusCall("StartServiceByName");
        BusMessage answer;
        // Started now or running already, as far as the notices that came before the answer go.
        owned_ =
            (sd_bus_message_append(call.get(), "su", SERVICE_NAME, 0) >= 0 && Call(call, deadline, answer) == IPC_OK) ||
            owned_;
    }
    return owned_ && !closed_;
}

BusMessage BusConnection::NewCall(const char* method) const
{
    sd_bus_message* call = nullptr;
    sd_bus_message_new_method_call(bus_.get(), &call, SERVICE_NAME, SERVICE_PATH, SERVICE_INTERFACE, method);
    return BusMessage(call);
}

IpcCode BusConnection::Call(const BusMessage& call, Deadline deadline, BusMessage& answer)
{
    uint64_t cookie = 0;
    if (sd_bus_send(bus_.get(), call.get(), &cookie) < 0) {
        closed_ = closed_ || sd_bus_is_open(bus_.get()) <= 0;
        return closed_ ? IPC_SERVICE_GONE : IPC_ERROR_ANSWER;
    }
    while (steady_clock::now() < deadline) {
        BusMessage message;
        if (!Step(message) && !closed_) {
            Wait(deadline);
        }
        if (closed_) {
            return IPC_SERVICE_GONE;
        }
        uint64_t answered = 0;
        if (message && sd_bus_message_get_reply_cookie(message.get(), &answered) >= 0 && answered == cookie) {
            answer = std::move(message);
            return CodeOf(answer);
        }
    }
    return IPC_TIMEOUT;
}

bool BusConnection::Step(BusMessage& message)
{
    sd_bus_message* raw = nullptr;
    const int result = sd_bus_process(bus_.get(), &raw);
    message.reset(raw);
    closed_ = closed_ || result < 0;
    const char* oldOwner = nullptr;
    const char* name = nullptr;
    const char* newOwner = nullptr;
    if (message && sd_bus_message_is_signal(raw, BUS_NAME, OWNER_NOTICE) > 0 && SentByBus(message) &&
        sd_bus_message_read(raw, "sss", &name, &oldOwner, &newOwner) > 0 && std::string_view(name) == SERVICE_NAME) {
        owned_ = *newOwner != '\0';
    }
    return result > 0;
}

void BusConnection::Wait(Deadline deadline)
{
    const auto left = std::chrono::duration_cast<microseconds>(deadline - steady_clock::now());
    if (left > microseconds::zero()) {
        sd_bus_wait(bus_.get(), static_cast<uint64_t>(left.count()));
    }
}

// Follows the notices first and asks afterwards, so that no change falls in between.
bool BusConnection::WatchService(Deadline deadline)
{
    const std::string rule = std::string("type='signal',sender='") + BUS_NAME + "',interface='" + BUS_NAME +
                             "',member='" + OWNER_NOTICE + "',arg0='" + SERVICE_NAME + "'";
    BusMessage answer;
    const BusMessage match = NewBusCall("AddMatch");
    const BusMessage query = NewBusCall("NameHasOwner");
    if (sd_bus_message_append(match.get(), "s", rule.c_str()) < 0 ||
        sd_bus_message_append(query.get(), "s", SERVICE_NAME) < 0 || Call(match, deadline, answer) != IPC_OK ||
        Call(query, deadline, answer) != IPC_OK) {
        return false;
    }
    int owned = 0;
    const bool read = sd_bus_message_read(answer.get(), "b", &owned) > 0;
    owned_ = owned != 0;
    return read;
}

BusMessage BusConnection::NewBusCall(const char* method) const
{
    sd_bus_message* call = nullptr;
    sd_bus_message_new_method_call(bus_.get(), &call, BUS_NAME, BUS_PATH, BUS_NAME, method);
    return BusMessage(call);
}

} // namespace OHOS::Host
