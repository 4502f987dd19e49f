#include "log_service_proxy.h"

#include <utility>

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

} // namespace

sptr<IZelkLogService> LogServiceProxy::Find(const std::shared_ptr<BusPool>& pool, Duration limit)
{
    const steady_clock::time_point start = steady_clock::now();
    std::unique_ptr<BusConnection> connection = pool->Take(start + limit);
    if (!connection) {
        return nullptr;
    }
    const bool found = connection->FindService(start + limit);
    pool->Return(std::move(connection));
    return found ? new LogServiceProxy(pool, limit, steady_clock::now() - start) : nullptr;
}

template <typename Answer, typename... Arguments>
int32_t LogServiceProxy::Call(const char* method, Answer& answer, const Arguments&... arguments)
{
    const Deadline deadline = steady_clock::now() + limit_ - spent_.exchange(Duration::zero());
    std::unique_ptr<BusConnection> connection = pool_->Take(deadline);
    if (!connection) {
        return IPC_SERVICE_GONE;
    }
    // The messages belong to the connection: they go before it is given back.
    int32_t code = IPC_ERROR_ANSWER;
    {
        const BusMessage call = connection->NewCall(method);
        BusMessage reply;
        if ((Append(call.get(), arguments) && ...)) {
            code = connection->Call(call, deadline, reply);
        }
        if (code == IPC_OK && !ReadAnswer(reply, code, answer)) {
            code = IPC_WRONG_TYPES;
        }
    }
    pool_->Return(std::move(connection));
    return code;
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
