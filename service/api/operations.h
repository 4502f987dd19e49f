// The log service's operations as data: the one list for all code that handles them alike.
#ifndef SERVICE_API_OPERATIONS_H
#define SERVICE_API_OPERATIONS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "zelk_service_api/i_zelk_log_service.h"

namespace OHOS::Host {

using Texts = std::vector<std::string>;

// An argument or an answer. Nothing stands for an argument that is not there, for the answer of an operation that
// answers only its code, and for an answer that was not given.
using Nothing = std::monostate;
using Value = std::variant<Nothing, bool, int64_t, std::string, Texts>;
enum class Type : uint8_t { NOTHING, BOOL, INT64, TEXT, TEXTS }; // A value's index.

// An argument where its owner keeps it, so that passing it on copies nothing.
using Argument = std::variant<Nothing, const bool*, const int64_t*, const std::string*, const Texts*>;

constexpr size_t MOST_ARGUMENTS = 2;
using ArgumentValues = std::array<Value, MOST_ARGUMENTS>;
using Arguments = std::array<Argument, MOST_ARGUMENTS>;

// Why a call over D-Bus broke off.
struct BreakOff {
    std::string text;     // In words, as the log has it.
    std::string error;    // The name of the D-Bus error, where the service answered with one.
    std::string received; // The types of the answer, where they are not those expected.
    std::string expected;
};

// What a call came to.
struct Outcome {
    int32_t code = 0; // The service's, or an IpcCode.
    Value answer;     // Of the operation's type; Nothing where there is none.
    std::optional<BreakOff> why;
};

struct Operation {
    const char* method; // Its name on D-Bus, which no other operation has.
    const char* name;   // Its name in C++, which is the same for a switch with and without items.
    std::array<Type, MOST_ARGUMENTS> arguments;
    Type answer;
    // Calls it on `service` with arguments of these types, which it may change.
    Outcome (*call)(HiviewDFX::IZelkLogService& service, ArgumentValues& arguments);
};

// The rows of the list, made from the types of the operations themselves.
namespace OperationRow {

using Service = HiviewDFX::IZelkLogService;

template <typename T>
constexpr Type TypeOf()
{
    if constexpr (std::is_same_v<T, Nothing>) {
        return Type::NOTHING;
    } else {
        return static_cast<Type>(Argument(static_cast<const T*>(nullptr)).index());
    }
}

// The values of an operation's parameters: the arguments, then the answer.
template <typename... Parameters>
std::tuple<std::decay_t<Parameters>...> ParametersOf(int32_t (Service::*operation)(Parameters...));
template <typename... Parameters>
std::tuple<std::decay_t<Parameters>...> ParametersOf(int32_t (*operation)(Service&, Parameters...));

template <auto OPERATION, size_t... INDEX>
constexpr Operation Make(const char* method, const char* name, std::index_sequence<INDEX...>)
{
    using Parameters = decltype(ParametersOf(OPERATION));
    using Answer = std::tuple_element_t<sizeof...(INDEX), Parameters>;
    const auto call = [](Service& service, [[maybe_unused]] ArgumentValues& arguments) {
        Answer answer{};
        const int32_t code = std::invoke(
            OPERATION, service, std::get<std::tuple_element_t<INDEX, Parameters>>(arguments[INDEX])..., answer);
        return Outcome{code, std::move(answer), std::nullopt};
    };
    return {method, name, {TypeOf<std::tuple_element_t<INDEX, Parameters>>()...}, TypeOf<Answer>(), call};
}

template <auto OPERATION>
constexpr Operation Of(const char* method, const char* name)
{
    constexpr size_t ALL = std::tuple_size_v<decltype(ParametersOf(OPERATION))>;
    return Make<OPERATION>(method, name, std::make_index_sequence<ALL - 1>());
}

template <auto OPERATION>
constexpr Operation Of(const char* name)
{
    return Of<OPERATION>(name, name);
}

// Calls of the two operations whose answer is not their last parameter.
inline int32_t SwitchBluetooth(Service& service, bool on, Nothing&)
{
    return service.HandleBluetoothCallPcmLogSwitch(on);
}
inline int32_t Fetch(Service& service, const std::string& request, int64_t value, std::string& response)
{
    return service.FetchRemoteDevicesLogs(request, response, value);
}

using Switch = int32_t (Service::*)(bool, bool&);
using SwitchWithItems = int32_t (Service::*)(bool, Texts&, bool&);
constexpr Switch MODEM_SWITCH = &Service::HandleModemLogSwitch;
constexpr SwitchWithItems MODEM_SWITCH_WITH_ITEMS = &Service::HandleModemLogSwitch;
constexpr Switch TCPDUMP_SWITCH = &Service::HandleTcpdumpSwitch;
constexpr SwitchWithItems TCPDUMP_SWITCH_WITH_ITEMS = &Service::HandleTcpdumpSwitch;

} // namespace OperationRow

// In the order of the interface.
inline constexpr std::array OPERATIONS = {
    OperationRow::Of<&HiviewDFX::IZelkLogService::GetModemLogConfig>("GetModemLogConfig"),
    OperationRow::Of<&HiviewDFX::IZelkLogService::GetModemLogDirectPackConfig>("GetModemLogDirectPackConfig"),
    OperationRow::Of<&HiviewDFX::IZelkLogService::GetModemLogLogMasks>("GetModemLogLogMasks"),
    OperationRow::Of<&HiviewDFX::IZelkLogService::GetModemLogStatus>("GetModemLogStatus"),
    OperationRow::Of<OperationRow::MODEM_SWITCH>("HandleModemLogSwitch"),
    OperationRow::Of<OperationRow::MODEM_SWITCH_WITH_ITEMS>("HandleModemLogSwitchWithConfigs", "HandleModemLogSwitch"),
    OperationRow::Of<&HiviewDFX::IZelkLogService::SendModemLogCommand>("SendModemLogCommand"),
    OperationRow::Of<&HiviewDFX::IZelkLogService::ChangeModemLogConfig>("ChangeModemLogConfig"),
    OperationRow::Of<&HiviewDFX::IZelkLogService::GetTcpdumpStatus>("GetTcpdumpStatus"),
    OperationRow::Of<&HiviewDFX::IZelkLogService::GetTcpdumpConfig>("GetTcpdumpConfig"),
    OperationRow::Of<&HiviewDFX::IZelkLogService::ChangeTcpdumpConfig>("ChangeTcpdumpConfig"),
    OperationRow::Of<OperationRow::TCPDUMP_SWITCH>("HandleTcpdumpSwitch"),
    OperationRow::Of<OperationRow::TCPDUMP_SWITCH_WITH_ITEMS>("HandleTcpdumpSwitchWithConfigs", "HandleTcpdumpSwitch"),
    OperationRow::Of<&OperationRow::SwitchBluetooth>("HandleBluetoothCallPcmLogSwitch"),
    OperationRow::Of<&OperationRow::Fetch>("FetchRemoteDevicesLogs"),
    OperationRow::Of<&HiviewDFX::IZelkLogService::QueryRemoteDevicesLogs>("QueryRemoteDevicesLogs"),
    OperationRow::Of<&HiviewDFX::IZelkLogService::GetRemoteDevicesList>("GetRemoteDevicesList"),
    OperationRow::Of<&HiviewDFX::IZelkLogService::QueryProtocolData>("QueryProtocolData"),
};

// Copies, for a service that keeps or changes them.
inline ArgumentValues Copies(const Arguments& arguments)
{
    ArgumentValues values;
    for (size_t i = 0; i < values.size(); ++i) {
        std::visit(
            [&value = values[i]](auto argument) {
                if constexpr (!std::is_same_v<decltype(argument), Nothing>) {
                    value = *argument;
                }
            },
            arguments[i]);
    }
    return values;
}

// The operation that has this name on D-Bus; null when there is none.
constexpr const Operation* FindOperation(std::string_view method)
{
    for (const Operation& operation : OPERATIONS) {
        if (method == operation.method) {
            return &operation;
        }
    }
    return nullptr;
}

// A log service of the desktop, whose operations can also be called by their rows.
class __attribute__((visibility("default"))) LogService : public HiviewDFX::IZelkLogService {
public:
    // The arguments have the operation's types. Any thread.
    virtual Outcome Call(const Operation& operation, const Arguments& arguments) = 0;
};

// A log service that handles all operations the same way: by Call.
class __attribute__((visibility("default"))) ForwardedService : public LogService {
public:
    int32_t GetModemLogConfig(Texts& keys, Texts& values) final
    {
        return Forward("GetModemLogConfig", values, &keys);
    }
    int32_t GetModemLogDirectPackConfig(std::string& config) final
    {
        return Forward("GetModemLogDirectPackConfig", config);
    }
    int32_t GetModemLogLogMasks(Texts& masks) final
    {
        return Forward("GetModemLogLogMasks", masks);
    }
    int32_t GetModemLogStatus(bool& status) final
    {
        return Forward("GetModemLogStatus", status);
    }
    int32_t HandleModemLogSwitch(bool on, bool& result) final
    {
        return Forward("HandleModemLogSwitch", result, &on);
    }
    int32_t HandleModemLogSwitch(bool on, Texts& configs, bool& result) final
    {
        return Forward("HandleModemLogSwitchWithConfigs", result, &on, &configs);
    }
    int32_t SendModemLogCommand(std::string command, bool& result) final
    {
        return Forward("SendModemLogCommand", result, &command);
    }
    int32_t ChangeModemLogConfig(Texts& configs, bool& result) final
    {
        return Forward("ChangeModemLogConfig", result, &configs);
    }
    int32_t GetTcpdumpStatus(bool& status) final
    {
        return Forward("GetTcpdumpStatus", status);
    }
    int32_t GetTcpdumpConfig(Texts keys, Texts& values) final
    {
        return Forward("GetTcpdumpConfig", values, &keys);
    }
    int32_t ChangeTcpdumpConfig(Texts& configs, bool& result) final
    {
        return Forward("ChangeTcpdumpConfig", result, &configs);
    }
    int32_t HandleTcpdumpSwitch(bool on, bool& result) final
    {
        return Forward("HandleTcpdumpSwitch", result, &on);
    }
    int32_t HandleTcpdumpSwitch(bool on, Texts& configs, bool& result) final
    {
        return Forward("HandleTcpdumpSwitchWithConfigs", result, &on, &configs);
    }
    int32_t HandleBluetoothCallPcmLogSwitch(bool on) final
    {
        Nothing answer;
        return Forward("HandleBluetoothCallPcmLogSwitch", answer, &on);
    }
    int32_t FetchRemoteDevicesLogs(const std::string& request, std::string& response, int64_t value) final
    {
        return Forward("FetchRemoteDevicesLogs", response, &request, &value);
    }
    int32_t QueryRemoteDevicesLogs(const std::string& request, std::string& response) final
    {
        return Forward("QueryRemoteDevicesLogs", response, &request);
    }
    int32_t GetRemoteDevicesList(std::string& response) final
    {
        return Forward("GetRemoteDevicesList", response);
    }
    int32_t QueryProtocolData(const std::string& request, std::string& response) final
    {
        return Forward("QueryProtocolData", response, &request);
    }

private:
    template <typename Answer>
    int32_t Forward(std::string_view method, Answer& answer, Argument first = {}, Argument second = {})
    {
        Outcome outcome = Call(*FindOperation(method), {first, second});
        if (auto* given = std::get_if<Answer>(&outcome.answer)) {
            answer = std::move(*given);
        }
        return outcome.code;
    }
};

} // namespace OHOS::Host

#endif // SERVICE_API_OPERATIONS_H
