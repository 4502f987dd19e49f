#include "log_service_proxy.h"

#include <cstdint>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "message_values.h"

namespace OHOS::Host {

namespace {

using HiviewDFX::IZelkLogService;
using std::chrono::steady_clock;

// The types of an answer: the code, and a value.
template <typename Answer>
constexpr const char* ANSWER_TYPES = "i";
template <>
constexpr const char* ANSWER_TYPES<bool> = "ib";
template <>
constexpr const char* ANSWER_TYPES<std::string> = "is";
template <>
constexpr const char* ANSWER_TYPES<std::vector<std::string>> = "ias";

// False, with the arguments left as they are, when `reply` holds anything else.
template <typename Answer>
bool ReadAnswer(const BusMessage& reply, int32_t& code, Answer& answer)
{
    int32_t readCode = 0;
    Answer value{};
    if (sd_bus_message_has_signature(reply.get(), ANSWER_TYPES<Answer>) <= 0 || !Read(reply.get(), readCode) ||
        !Read(reply.get(), value)) {
        return false;
    }
    code = readCode;
    answer = std::move(value);
    return true;
}

// Sends a call of `method` and waits for the answer.
template <typename... Arguments>
IpcCode Send(BusConnection& connection, Deadline deadline, BusMessage& reply, const char* method,
             const Arguments&... arguments)
{
    if (!connection.EnsureService(deadline)) {
        return steady_clock::now() < deadline ? IPC_SERVICE_GONE : IPC_TIMEOUT;
    }
    const BusMessage call = connection.NewCall(method);
    return (Append(call.get(), arguments) && ...) ? connection.Call(call, deadline, reply) : IPC_ERROR_ANSWER;
}

// Calls `method` and reads its answer. The messages belong to the connection: they are gone when this returns.
template <typename Answer, typename... Arguments>
int32_t CallOver(BusConnection& connection, Deadline deadline, const char* method, Answer& answer,
                 const Arguments&... arguments)
{
    BusMessage reply;
    int32_t code = Send(connection, deadline, reply, method, arguments...);
    if (code == IPC_SERVICE_GONE && reply &&
        sd_bus_message_is_method_error(reply.get(), SD_BUS_ERROR_SERVICE_UNKNOWN) > 0) {
        // The owner left before the call reached it, and there may be another one already.
        code = Send(connection, deadline, reply, method, arguments...);
    }
    if (code == IPC_OK && !ReadAnswer(reply, code, answer)) {
        code = IPC_WRONG_TYPES;
    }
    return code;
}

} // namespace

sptr<IZelkLogService> LogServiceProxy::Find(const std::shared_ptr<BusPool>& pool, Duration limit)
{
    const steady_clock::time_point start = steady_clock::now();
    try {
        std::unique_ptr<BusConnection> connection;
        if (pool->Acquire(start + limit, connection) < 0) {
            return nullptr;
        }
        const bool isFound = connection->EnsureService(start + limit);
        pool->Release(std::move(connection));
        return isFound ? new LogServiceProxy(pool, limit, steady_clock::now() - start) : nullptr;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

template <typename Answer, typename... Arguments>
int32_t LogServiceProxy::Call(const char* method, Answer& answer, const Arguments&... arguments)
{
    const Deadline deadline = steady_clock::now() + limit_ - spent_.exchange(Duration::zero());
    try {
        std::unique_ptr<BusConnection> connection;
        const int error = pool_->Acquire(deadline, connection);
        if (error < 0) {
            return CodeOfError(error);
        }
        const int32_t code = CallOver(*connection, deadline, method, answer, arguments...);
        pool_->Release(std::move(connection));
        return code;
    } catch (const std::bad_alloc&) {
        return IPC_ERROR_ANSWER;
    }
}

int32_t LogServiceProxy::GetModemLogConfig(std::vector<std::string>& keys, std::vector<std::string>& values)
{
    return Call("GetModemLogConfig", values, keys);
}

int32_t LogServiceProxy::GetModemLogDirectPackConfig(std::string& config)
{
    return Call("GetModemLogDirectPackConfig", config);
}

int32_t LogServiceProxy::GetModemLogLogMasks(std::vector<std::string>& masks)
{
    return Call("GetModemLogLogMasks", masks);
}

int32_t LogServiceProxy::GetModemLogStatus(bool& status)
{
    return Call("GetModemLogStatus", status);
}

int32_t LogServiceProxy::HandleModemLogSwitch(bool on, bool& result)
{
    return Call("HandleModemLogSwitch", result, on);
}

int32_t LogServiceProxy::HandleModemLogSwitch(bool on, std::vector<std::string>& configs, bool& result)
{
    return Call("HandleModemLogSwitchWithConfigs", result, on, configs);
}

int32_t LogServiceProxy::SendModemLogCommand(std::string command, bool& result)
{
    return Call("SendModemLogCommand", result, command);
}

int32_t LogServiceProxy::ChangeModemLogConfig(std::vector<std::string>& configs, bool& result)
{
    return Call("ChangeModemLogConfig", result, configs);
}

int32_t LogServiceProxy::GetTcpdumpStatus(bool& status)
{
    return Call("GetTcpdumpStatus", status);
}

int32_t LogServiceProxy::GetTcpdumpConfig(std::vector<std::string> keys, std::vector<std::string>& values)
{
    return Call("GetTcpdumpConfig", values, keys);
}

int32_t LogServiceProxy::ChangeTcpdumpConfig(std::vector<std::string>& configs, bool& result)
{
    return Call("ChangeTcpdumpConfig", result, configs);
}

int32_t LogServiceProxy::HandleTcpdumpSwitch(bool on, bool& result)
{
    return Call("HandleTcpdumpSwitch", result, on);
}

int32_t LogServiceProxy::HandleTcpdumpSwitch(bool on, std::vector<std::string>& configs, bool& result)
{
    return Call("HandleTcpdumpSwitchWithConfigs", result, on, configs);
}

int32_t LogServiceProxy::HandleBluetoothCallPcmLogSwitch(bool on)
{
    NoValue nothing;
    return Call("HandleBluetoothCallPcmLogSwitch", nothing, on);
}

int32_t LogServiceProxy::FetchRemoteDevicesLogs(const std::string& request, std::string& response, int64_t value)
{
    return Call("FetchRemoteDevicesLogs", response, request, value);
}

int32_t LogServiceProxy::QueryRemoteDevicesLogs(const std::string& request, std::string& response)
{
    return Call("QueryRemoteDevicesLogs", response, request);
}

int32_t LogServiceProxy::GetRemoteDevicesList(std::string& response)
{
    return Call("GetRemoteDevicesList", response);
}

int32_t LogServiceProxy::QueryProtocolData(const std::string& request, std::string& response)
{
    return Call("QueryProtocolData", response, request);
}

} // namespace OHOS::Host
