#include "log_service_adaptor.h"

#include <algorithm>
#include <cerrno>
#include <functional>
#include <new>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "dbus_names.h"
#include "message_values.h"
#include "service/reference/service_limits.h"

namespace OHOS::Host {

namespace {

using HiviewDFX::IZelkLogService;
using Texts = std::vector<std::string>;

// The values of an operation's parameters.
template <typename... Parameters>
std::tuple<std::decay_t<Parameters>...> ValuesOf(int32_t (IZelkLogService::*operation)(Parameters...));
template <typename... Parameters>
std::tuple<std::decay_t<Parameters>...> ValuesOf(int32_t (*operation)(IZelkLogService&, Parameters...));

// Reads the arguments of a call. Anything past the service's limits stays in the message, so that a call cannot take
// much more memory than they allow.
class ArgumentReader {
public:
    explicit ArgumentReader(sd_bus_message* call) : call_(call) {}

    // False when the argument is of another type, or too large.
    template <typename Value>
    bool Read(Value& value)
    {
        return Host::Read(call_, value);
    }
    bool Read(std::string& value)
    {
        const char* text = nullptr;
        if (sd_bus_message_read_basic(call_, SD_BUS_TYPE_STRING, &text) <= 0 || !Admit(text)) {
            return false;
        }
        value = text;
        return true;
    }
    bool Read(Texts& value)
    {
        return ReadEach(call_, [this, &value](const char* text) {
            if (!Admit(text)) {
                return false;
            }
            value.emplace_back(text);
            return true;
        });
    }

    bool IsTooLarge() const
    {
        return size_ > MAX_REQUEST_SIZE;
    }

private:
    // Neither an item nor the answer to a key is shorter than this, so a list of more texts is refused in any case.
    static constexpr size_t LEAST_TEXT_SIZE = std::string_view(R"({"configKey":"","value":})").size();

    bool Admit(std::string_view text)
    {
        size_ += std::max(text.size(), LEAST_TEXT_SIZE);
        return !IsTooLarge();
    }

    sd_bus_message* const call_;
    size_t size_ = 0;
};

template <typename Values, size_t... INDEX>
bool ReadArguments([[maybe_unused]] ArgumentReader& reader, Values& values, std::index_sequence<INDEX...>)
{
    return (reader.Read(std::get<INDEX>(values)) && ...);
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

// The build generates the rows of the methods from data/dev.zelk.LogService1.xml.
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
    ArgumentReader reader(call);
    int32_t code = CODE_REFUSED;
    if (ReadArguments(reader, values, std::make_index_sequence<ANSWER>())) {
        const auto operation = [this](auto&... value) {
            return std::invoke(OPERATION, service_, value...);
        };
        code = std::apply(operation, values);
    } else if (!reader.IsTooLarge()) {
        return -EBADMSG;
    }
    const int result = Reply(call, code, std::get<ANSWER>(values));
    observer_(sd_bus_message_get_member(call), code);
    return result;
}

} // namespace OHOS::Host
