#include "log_service_proxy.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <new>
#include <string>
#include <system_error>
#include <utility>

#include "hilog/log.h"
#include "message_values.h"

namespace OHOS::Host {

namespace {

using std::chrono::steady_clock;

std::string TextOf(int error)
{
    return std::generic_category().message(-error);
}

Outcome BrokenOff(int32_t code, BreakOff why)
{
    return {code, {}, std::move(why)};
}

Outcome BrokenOff(int32_t code)
{
    const char* text = code == IPC_SERVICE_GONE ? "the service is gone"
                       : code == IPC_TIMEOUT    ? "no answer in time"
                                                : "out of memory";
    return BrokenOff(code, BreakOff{text, {}, {}, {}});
}

// A connection failed with a negative errno.
Outcome BrokenOffBy(int error)
{
    return BrokenOff(CodeOfError(error));
}

Outcome NotSent(int error)
{
    return BrokenOff(IPC_ERROR_ANSWER, BreakOff{"the request cannot be sent: " + TextOf(error), {}, {}, {}});
}

Outcome Refused(const sd_bus_error& error)
{
    const std::string name = error.name;
    const std::string message = error.message == nullptr ? "" : error.message;
    return BrokenOff(IPC_ERROR_ANSWER, BreakOff{name + ": " + message, name, {}, {}});
}

// The types of an answer: the code, and a value.
const char* AnswerTypes(Type type)
{
    switch (type) {
    case Type::BOOL:
        return "ib";
    case Type::INT64:
        return "ix";
    case Type::TEXT:
        return "is";
    case Type::TEXTS:
        return "ias";
    case Type::NOTHING:
        break;
    }
    return "i";
}

Outcome ReadAnswer(sd_bus_message* reply, Type type)
{
    const std::string expected = AnswerTypes(type);
    const std::string received = sd_bus_message_get_signature(reply, 1);
    Outcome outcome;
    if (received == expected && Read(reply, outcome.code) && Read(reply, type, outcome.answer)) {
        return outcome;
    }
    const std::string text = "the answer has the types \"" + received + "\", not \"" + expected + '"';
    return BrokenOff(IPC_WRONG_TYPES, BreakOff{text, {}, received, expected});
}

// Sends a call of the operation and waits for the answer, which it stores in `reply`.
Outcome Send(BusConnection& connection, Deadline deadline, const Operation& operation, const Arguments& arguments,
             BusMessage& reply)
{
    std::string whyNot;
    if (!connection.EnsureService(deadline, whyNot)) {
        return BrokenOff(steady_clock::now() < deadline ? IPC_SERVICE_GONE : IPC_TIMEOUT);
    }
    const BusMessage call = connection.NewCall(operation.method);
    uint64_t cookie = 0;
    int error = call ? 0 : -ENOMEM;
    for (const Argument& argument : arguments) {
        error = error < 0 ? error : Append(call.get(), argument);
    }
    error = error < 0 ? error : connection.Send(call, cookie);
    if (error < 0) {
        return error == -ENOTCONN || error == -ENOMEM ? BrokenOffBy(error) : NotSent(error);
    }
    const IpcCode code = connection.Receive(call, cookie, deadline, reply);
    if (code == IPC_OK) {
        return ReadAnswer(reply.get(), operation.answer);
    }
    const sd_bus_error* refusal = reply ? sd_bus_message_get_error(reply.get()) : nullptr;
    return code == IPC_ERROR_ANSWER && refusal != nullptr ? Refused(*refusal) : BrokenOff(code);
}

// The messages belong to the connection: they are gone when this returns.
Outcome CallOver(BusConnection& connection, Deadline deadline, const Operation& operation, const Arguments& arguments)
{
    BusMessage reply;
    Outcome outcome = Send(connection, deadline, operation, arguments, reply);
    if (outcome.why && outcome.code == IPC_SERVICE_GONE && reply &&
        sd_bus_message_is_method_error(reply.get(), SD_BUS_ERROR_SERVICE_UNKNOWN) > 0) {
        // The owner left before the call reached it, and there may be another one already.
        outcome = Send(connection, deadline, operation, arguments, reply);
    }
    return outcome;
}

} // namespace

sptr<LogServiceProxy> LogServiceProxy::Find(const std::shared_ptr<BusPool>& pool, Duration limit, std::string& whyNot)
{
    const steady_clock::time_point start = steady_clock::now();
    try {
        std::unique_ptr<BusConnection> connection;
        const int error = pool->Acquire(start + limit, connection);
        if (error < 0) {
            whyNot = "the bus cannot be reached: " + TextOf(error);
            return nullptr;
        }
        const bool isFound = connection->EnsureService(start + limit, whyNot);
        pool->Release(std::move(connection));
        return isFound ? new LogServiceProxy(pool, limit, steady_clock::now() - start) : nullptr;
    } catch (const std::bad_alloc&) {
        whyNot = "out of memory"; // Short enough to need no memory.
        return nullptr;
    }
}

Outcome LogServiceProxy::Call(const Operation& operation, const Arguments& arguments)
{
    const Deadline deadline = steady_clock::now() + limit_ - spent_.exchange(Duration::zero());
    Outcome outcome;
    try {
        outcome = CallBefore(deadline, operation, arguments);
    } catch (const std::bad_alloc&) {
        outcome = BrokenOff(IPC_ERROR_ANSWER);
    }
    if (outcome.why) {
        HiLogPrint(LOG_CORE, LOG_ERROR, 0, "DBUS", "%{public}s: code %{public}d: %{public}s", operation.method,
                   outcome.code, outcome.why->text.c_str());
    }
    return outcome;
}

Outcome LogServiceProxy::CallBefore(Deadline deadline, const Operation& operation, const Arguments& arguments)
{
    std::unique_ptr<BusConnection> connection;
    const int error = pool_->Acquire(deadline, connection);
    if (error < 0) {
        return BrokenOffBy(error);
    }
    Outcome outcome = CallOver(*connection, deadline, operation, arguments);
    pool_->Release(std::move(connection));
    return outcome;
}

} // namespace OHOS::Host
