#include "bus_connection.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

#include "dbus_names.h"

namespace OHOS::Host {

namespace {

using std::chrono::microseconds;
using std::chrono::steady_clock;

constexpr const char* OWNER_NOTICE = "NameOwnerChanged";

// How long an answer is awaited from a connection that no longer owns the service's name.
constexpr std::chrono::seconds PATIENCE_WITH_FORMER_OWNER(1);

// The bus ensures that no peer sends in another's name.
bool IsSentBy(const BusMessage& message, const char* name)
{
    const char* sender = sd_bus_message_get_sender(message.get());
    return sender != nullptr && name != nullptr && std::string_view(sender) == name;
}

bool IsAnswer(const BusMessage& message, const BusMessage& call, uint64_t cookie)
{
    uint64_t answered = 0;
    return message && sd_bus_message_get_reply_cookie(message.get(), &answered) >= 0 && answered == cookie &&
           (IsSentBy(message, BUS_NAME) || IsSentBy(message, sd_bus_message_get_destination(call.get())));
}

// The bus answers in the service's place when the service has died or does not exist. An error that the service itself
// sends is an answer, whatever its name.
IpcCode CodeOf(const BusMessage& answer)
{
    const sd_bus_error* error = sd_bus_message_get_error(answer.get());
    if (error == nullptr) {
        return IPC_OK;
    }
    if (!IsSentBy(answer, BUS_NAME)) {
        return IPC_ERROR_ANSWER;
    }
    constexpr std::array<std::string_view, 4> GONE = {SD_BUS_ERROR_NO_REPLY, SD_BUS_ERROR_SERVICE_UNKNOWN,
                                                      SD_BUS_ERROR_NAME_HAS_NO_OWNER, SD_BUS_ERROR_DISCONNECTED};
    const std::string_view name = error->name;
    if (std::find(GONE.begin(), GONE.end(), name) != GONE.end()) {
        return IPC_SERVICE_GONE;
    }
    return name == SD_BUS_ERROR_TIMEOUT || name == "org.freedesktop.DBus.Error.TimedOut" ? IPC_TIMEOUT
                                                                                         : IPC_ERROR_ANSWER;
}

// `answer` is what the bus answered, if anything, to the request to start the service.
std::string WhyNotStarted(const BusMessage& answer)
{
    if (!answer) {
        return "the bus cannot be reached: it does not answer";
    }
    const sd_bus_error* error = sd_bus_message_get_error(answer.get());
    if (error == nullptr || sd_bus_error_has_name(error, SD_BUS_ERROR_SERVICE_UNKNOWN) > 0) {
        return std::string("nobody owns the name ") + SERVICE_NAME;
    }
    return std::string("the log service could not be started: ") + error->name + ": " +
           (error->message == nullptr ? "" : error->message);
}

} // namespace

IpcCode CodeOfError(int error)
{
    if (error == -ENOMEM) {
        return IPC_ERROR_ANSWER;
    }
    return error == -ETIMEDOUT ? IPC_TIMEOUT : IPC_SERVICE_GONE;
}

int BusConnection::Open(const std::string& address, Deadline deadline, std::unique_ptr<BusConnection>& connection)
{
    BusHandle bus;
    int result = OpenBus(address, TimeUntil<microseconds>(deadline), bus);
    if (result < 0) {
        return result;
    }
    std::unique_ptr<BusConnection> opened(new BusConnection(std::move(bus)));
    result = opened->Start(deadline);
    if (result < 0) {
        return result == -EINVAL ? -EIO : result; // It is not the address that is invalid.
    }
    connection = std::move(opened);
    return 0;
}

int BusConnection::Start(Deadline deadline)
{
    while (sd_bus_is_ready(bus_.get()) <= 0) {
        const int result = ProcessPending(deadline);
        if (result < 0) {
            return result;
        }
        if (steady_clock::now() >= deadline) {
            return -ETIMEDOUT;
        }
        if (sd_bus_is_ready(bus_.get()) <= 0) {
            Wait(deadline);
        }
    }
    return WatchService(deadline);
}

int BusConnection::ProcessPending(Deadline deadline)
{
    BusMessage message;
    while (ProcessOne(message)) {
        if (steady_clock::now() >= deadline) {
            return -ETIMEDOUT;
        }
    }
    return error_;
}

bool BusConnection::EnsureService(Deadline deadline, std::string& whyNot)
{
    BusMessage answer;
    if (owner_.empty()) {
        const BusMessage call = NewBusCall("StartServiceByName");
        if (sd_bus_message_append(call.get(), "su", SERVICE_NAME, 0) >= 0 &&
            CallBus(call, deadline, answer) == IPC_OK) {
            QueryOwner(deadline);
        }
    }
    const bool isThere = !owner_.empty() && error_ == 0;
    if (!isThere) {
        whyNot = WhyNotStarted(answer);
    }
    return isThere;
}

BusMessage BusConnection::NewCall(const char* method) const
{
    sd_bus_message* call = nullptr;
    sd_bus_message_new_method_call(bus_.get(), &call, owner_.c_str(), SERVICE_PATH, SERVICE_INTERFACE, method);
    return BusMessage(call);
}

int BusConnection::Send(const BusMessage& call, uint64_t& cookie)
{
    const int result = sd_bus_send(bus_.get(), call.get(), &cookie);
    return result < 0 && sd_bus_is_open(bus_.get()) <= 0 ? -ENOTCONN : result;
}

IpcCode BusConnection::CallBus(const BusMessage& call, Deadline deadline, BusMessage& answer)
{
    uint64_t cookie = 0;
    const int result = Send(call, cookie);
    return result < 0 ? CodeOfError(result) : Receive(call, cookie, deadline, answer);
}

IpcCode BusConnection::Receive(const BusMessage& call, uint64_t cookie, Deadline deadline, BusMessage& answer)
{
    bool isForsaken = false;
    while (steady_clock::now() < deadline) {
        BusMessage message;
        const bool isBusy = ProcessOne(message);
        if (error_ < 0) {
            return CodeOfError(error_);
        }
        if (IsAnswer(message, call, cookie)) {
            answer = std::move(message);
            return CodeOf(answer);
        }
        if (!isForsaken && HasPassedFrom(call)) {
            const Deadline soon = steady_clock::now() + PATIENCE_WITH_FORMER_OWNER;
            isForsaken = soon < deadline;
            deadline = std::min(deadline, soon);
        }
        if (!isBusy) {
            Wait(deadline);
        }
    }
    return isForsaken ? IPC_SERVICE_GONE : IPC_TIMEOUT;
}

bool BusConnection::HasPassedFrom(const BusMessage& call) const
{
    const std::string_view callee = sd_bus_message_get_destination(call.get());
    return !owner_.empty() && callee != owner_ && callee != BUS_NAME;
}

bool BusConnection::ProcessOne(BusMessage& message)
{
    sd_bus_message* raw = nullptr;
    const int result = sd_bus_process(bus_.get(), &raw);
    message.reset(raw);
    if (result < 0) {
        error_ = result;
        return false;
    }
    FollowOwner(message);
    return result > 0;
}

void BusConnection::FollowOwner(const BusMessage& message)
{
    const char* name = nullptr;
    const char* oldOwner = nullptr;
    const char* newOwner = nullptr;
    if (message && sd_bus_message_is_signal(message.get(), BUS_NAME, OWNER_NOTICE) > 0 && IsSentBy(message, BUS_NAME) &&
        sd_bus_message_read(message.get(), "sss", &name, &oldOwner, &newOwner) > 0 &&
        std::string_view(name) == SERVICE_NAME) {
        owner_ = newOwner;
    }
}

void BusConnection::Wait(Deadline deadline)
{
    const microseconds left = TimeUntil<microseconds>(deadline);
    if (left > microseconds::zero()) {
        sd_bus_wait(bus_.get(), static_cast<uint64_t>(left.count()));
    }
}

// Follows the notices first and asks afterwards, so that no change is missed in between.
int BusConnection::WatchService(Deadline deadline)
{
    const std::string rule = std::string("type='signal',sender='") + BUS_NAME + "',interface='" + BUS_NAME +
                             "',member='" + OWNER_NOTICE + "',arg0='" + SERVICE_NAME + "'";
    BusMessage answer;
    const BusMessage match = NewBusCall("AddMatch");
    if (sd_bus_message_append(match.get(), "s", rule.c_str()) < 0) {
        return -ENOMEM;
    }
    const IpcCode code = CallBus(match, deadline, answer);
    if (code != IPC_OK && error_ == 0) {
        return code == IPC_TIMEOUT ? -ETIMEDOUT : -EIO;
    }
    QueryOwner(deadline);
    return error_;
}

void BusConnection::QueryOwner(Deadline deadline)
{
    BusMessage answer;
    const BusMessage query = NewBusCall("GetNameOwner");
    const char* owner = nullptr;
    if (sd_bus_message_append(query.get(), "s", SERVICE_NAME) >= 0 && CallBus(query, deadline, answer) == IPC_OK &&
        sd_bus_message_read(answer.get(), "s", &owner) > 0) {
        owner_ = owner;
    }
}

BusMessage BusConnection::NewBusCall(const char* method) const
{
    sd_bus_message* call = nullptr;
    sd_bus_message_new_method_call(bus_.get(), &call, BUS_NAME, BUS_PATH, BUS_NAME, method);
    return BusMessage(call);
}

} // namespace OHOS::Host
