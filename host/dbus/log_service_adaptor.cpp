#include "log_service_adaptor.h"

#include <cerrno>
#include <functional>
#include <new>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "dbus_names.h"
#include "message_values.h"

namespace OHOS::Host {

namespace {

using HiviewDFX::IZelkLogService;
using Texts = std::vector<std::string>;

// The values of an operation's parameters.
template <typename... Parameters>
std::tuple<std::decay_t<Parameters>...> ValuesOf(int32_t (IZelkLogService::*operation)(Parameters...));
template <typename... Parameters>
std::tuple<std::decay_t<Parameters>...> ValuesOf(int32_t (*operation)(IZelkLogService&, Parameters...));

template <typename Values, size_t... INDEX>
bool ReadArguments([[maybe_unused]] sd_bus_message* call, Values& values, std::index_sequence<INDEX...>)
{
    return (Read(call, std::get<INDEX>(values)) && ...);
}

template <typename Answer>
int Reply(sd_bus_message* call, int32_t code, const Answer& answer)
{
    sd_bus_message* raw = nullptr;
    const int result = sd_bus_message_new_method_return(call, &raw);
    const BusMessage reply(raw);
    if (result < 0) {
        return result;
    }
    return Append(raw, code) && Append(raw, answer) ? sd_bus_send(nullptr, raw, nullptr) : -ENOMEM;
}

template <auto OPERATION>
int OnCall(sd_bus_message* call, void* adaptor, sd_bus_error*)
{
    try {
        return static_cast<LogServiceAdaptor*>(adaptor)->Serve<OPERATION>(call);
    } catch (const std::bad_alloc&) {
        return -ENOMEM;
    }
}

// Two operations whose parameters are not in the order of the method's arguments and answer.
int32_t SwitchBluetoothCallPcmLog(IZelkLogService& service, bool on, NoValue&)
{
    return service.HandleBluetoothCallPcmLogSwitch(on);
}

int32_t FetchRemoteDevicesLogs(IZelkLogService& service, const std::string& request, int64_t value,
                               std::string& response)
{
    return service.FetchRemoteDevicesLogs(request, response, value);
}

using Switch = int32_t (IZelkLogService::*)(bool, bool&);
using SwitchWithConfigs = int32_t (IZelkLogService::*)(bool, Texts&, bool&);

constexpr auto OnGetModemLogConfig = OnCall<&IZelkLogService::GetModemLogConfig>;
constexpr auto OnGetModemLogDirectPackConfig = OnCall<&IZelkLogService::GetModemLogDirectPackConfig>;
constexpr auto OnGetModemLogLogMasks = OnCall<&IZelkLogService::GetModemLogLogMasks>;
constexpr auto OnGetModemLogStatus = OnCall<&IZelkLogService::GetModemLogStatus>;
constexpr auto OnHandleModemLogSwitch = OnCall<static_cast<Switch>(&IZelkLogService::HandleModemLogSwitch)>;
constexpr auto OnHandleModemLogSwitchWithConfigs =
    OnCall<static_cast<SwitchWithConfigs>(&IZelkLogService::HandleModemLogSwitch)>;
constexpr auto OnSendModemLogCommand = OnCall<&IZelkLogService::SendModemLogCommand>;
constexpr auto OnChangeModemLogConfig = OnCall<&IZelkLogService::ChangeModemLogConfig>;
constexpr auto OnGetTcpdumpStatus = OnCall<&IZelkLogService::GetTcpdumpStatus>;
constexpr auto OnGetTcpdumpConfig = OnCall<&IZelkLogService::GetTcpdumpConfig>;
constexpr auto OnChangeTcpdumpConfig = OnCall<&IZelkLogService::ChangeTcpdumpConfig>;
constexpr auto OnHandleTcpdumpSwitch = OnCall<static_cast<Switch>(&IZelkLogService::HandleTcpdumpSwitch)>;
constexpr auto OnHandleTcpdumpSwitchWithConfigs =
    OnCall<static_cast<SwitchWithConfigs>(&IZelkLogService::HandleTcpdumpSwitch)>;
constexpr auto OnHandleBluetoothCallPcmLogSwitch = OnCall<&SwitchBluetoothCallPcmLog>;
constexpr auto OnFetchRemoteDevicesLogs = OnCall<&FetchRemoteDevicesLogs>;
constexpr auto OnQueryRemoteDevicesLogs = OnCall<&IZelkLogService::QueryRemoteDevicesLogs>;
constexpr auto OnGetRemoteDevicesList = OnCall<&IZelkLogService::GetRemoteDevicesList>;
constexpr auto OnQueryProtocolData = OnCall<&IZelkLogService::QueryProtocolData>;

// The rows of the methods are made, when this is built, of the interface's description in
// data/dev.zelk.LogService1.xml.
constexpr sd_bus_vtable VTABLE[] = {
    SD_BUS_VTABLE_START(0),
#include "dev.zelk.LogService1.rows"
    SD_BUS_VTABLE_END,
};

} // namespace

int LogServiceAdaptor::Export(sd_bus* bus)
{
    sd_bus_slot* slot = nullptr;
    const int result = sd_bus_add_object_vtable(bus, &slot, SERVICE_PATH, SERVICE_INTERFACE, VTABLE, this);
    slot_.reset(slot);
    return result;
}

template <auto OPERATION>
int LogServiceAdaptor::Serve(sd_bus_message* call)
{
    using Values = decltype(ValuesOf(OPERATION));
    constexpr size_t ANSWER = std::tuple_size_v<Values> - 1;
    Values values;
    if (!ReadArguments(call, values, std::make_index_sequence<ANSWER>())) {
        return -EBADMSG;
    }
    const auto operation = [this](auto&... value) {
        return std::invoke(OPERATION, service_, value...);
    };
    const int32_t code = std::apply(operation, values);
    const int result = Reply(call, code, std::get<ANSWER>(values));
    observer_(sd_bus_message_get_member(call), code);
    return result;
}

} // namespace OHOS::Host
