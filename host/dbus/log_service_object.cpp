#include "log_service_object.h"

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <sdbus-c++/sdbus-c++.h>

#include "dbus_names.h"

namespace OHOS::Host {

namespace {

using HiviewDFX::IZelkLogService;
using Names = std::vector<std::string>;
using Texts = std::vector<std::string>;

// Registers methods with their names of arguments.
class Offer {
public:
    Offer(sdbus::IObject& object, CallObserver observer) : object_(object), observer_(std::move(observer)) {}

    // `operation` takes the method's arguments and then the answer to be filled, and returns the code.
    template <typename Answer, typename... Arguments, typename Operation>
    void Method(const char* name, const Names& arguments, const char* answer, const Operation& operation)
    {
        object_.registerMethod(name)
            .onInterface(SERVICE_INTERFACE)
            .withInputParamNames(arguments)
            .withOutputParamNames(Names{"code", answer})
            .implementedAs([name, operation, observer = observer_](Arguments... values) {
                std::tuple<int32_t, Answer> answered;
                std::get<0>(answered) = operation(values..., std::get<1>(answered));
                observer(name, std::get<0>(answered));
                return answered;
            });
    }

    // The same without an answer besides the code.
    template <typename Argument, typename Operation>
    void MethodWithoutAnswer(const char* name, const char* argument, const Operation& operation)
    {
        object_.registerMethod(name)
            .onInterface(SERVICE_INTERFACE)
            .withInputParamNames(argument)
            .withOutputParamNames("code")
            .implementedAs([name, operation, observer = observer_](Argument value) {
                const int32_t code = operation(value);
                observer(name, code);
                return code;
            });
    } // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): the object keeps what was registered.

private:
    sdbus::IObject& object_;
    const CallObserver observer_;
};

void OfferModemLog(Offer& offer, IZelkLogService& service)
{
    offer.Method<Texts, Texts>("GetModemLogConfig", {"keys"}, "values", [&service](Texts& keys, Texts& values) {
        return service.GetModemLogConfig(keys, values);
    });
    offer.Method<std::string>("GetModemLogDirectPackConfig", {}, "config",
                              [&service](std::string& config) { return service.GetModemLogDirectPackConfig(config); });
    offer.Method<Texts>("GetModemLogLogMasks", {}, "masks",
                        [&service](Texts& masks) { return service.GetModemLogLogMasks(masks); });
    offer.Method<bool>("GetModemLogStatus", {}, "status",
                       [&service](bool& status) { return service.GetModemLogStatus(status); });
    offer.Method<bool, bool>("HandleModemLogSwitch", {"on"}, "result",
                             [&service](bool on, bool& result) { return service.HandleModemLogSwitch(on, result); });
    offer.Method<bool, bool, Texts>("HandleModemLogSwitchWithConfigs", {"on", "configs"}, "result",
                                    [&service](bool on, Texts& configs, bool& result) {
                                        return service.HandleModemLogSwitch(on, configs, result);
                                    });
    offer.Method<bool, std::string>(
        "SendModemLogCommand", {"command"}, "result",
        [&service](std::string& command, bool& result) { return service.SendModemLogCommand(command, result); });
    offer.Method<bool, Texts>("ChangeModemLogConfig", {"configs"}, "result", [&service](Texts& configs, bool& result) {
        return service.ChangeModemLogConfig(configs, result);
    });
}

void OfferTcpdump(Offer& offer, IZelkLogService& service)
{
    offer.Method<bool>("GetTcpdumpStatus", {}, "status",
                       [&service](bool& status) { return service.GetTcpdumpStatus(status); });
    offer.Method<Texts, Texts>("GetTcpdumpConfig", {"keys"}, "values", [&service](Texts& keys, Texts& values) {
        return service.GetTcpdumpConfig(keys, values);
    });
    offer.Method<bool, Texts>("ChangeTcpdumpConfig", {"configs"}, "result", [&service](Texts& configs, bool& result) {
        return service.ChangeTcpdumpConfig(configs, result);
    });
    offer.Method<bool, bool>("HandleTcpdumpSwitch", {"on"}, "result",
                             [&service](bool on, bool& result) { return service.HandleTcpdumpSwitch(on, result); });
    offer.Method<bool, bool, Texts>(
        "HandleTcpdumpSwitchWithConfigs", {"on", "configs"}, "result",
        [&service](bool on, Texts& configs, bool& result) { return service.HandleTcpdumpSwitch(on, configs, result); });
}

void OfferBluetooth(Offer& offer, IZelkLogService& service)
{
    offer.MethodWithoutAnswer<bool>("HandleBluetoothCallPcmLogSwitch", "on",
                                    [&service](bool on) { return service.HandleBluetoothCallPcmLogSwitch(on); });
}

void OfferRemoteDevices(Offer& offer, IZelkLogService& service)
{
    offer.Method<std::string, std::string, int64_t>(
        "FetchRemoteDevicesLogs", {"request", "value"}, "response",
        [&service](const std::string& request, int64_t value, std::string& response) {
            return service.FetchRemoteDevicesLogs(request, response, value);
        });
    offer.Method<std::string, std::string>("QueryRemoteDevicesLogs", {"request"}, "response",
                                           [&service](const std::string& request, std::string& response) {
                                               return service.QueryRemoteDevicesLogs(request, response);
                                           });
    offer.Method<std::string>("GetRemoteDevicesList", {}, "response",
                              [&service](std::string& response) { return service.GetRemoteDevicesList(response); });
    offer.Method<std::string, std::string>("QueryProtocolData", {"request"}, "response",
                                           [&service](const std::string& request, std::string& response) {
                                               return service.QueryProtocolData(request, response);
                                           });
}

} // namespace

std::unique_ptr<sdbus::IObject> OfferLogService(sdbus::IConnection& bus, IZelkLogService& service,
                                                const CallObserver& observer)
{
    std::unique_ptr<sdbus::IObject> object = sdbus::createObject(bus, SERVICE_PATH);
    Offer offer(*object, observer);
    OfferModemLog(offer, service);
    OfferTcpdump(offer, service);
    OfferBluetooth(offer, service);
    OfferRemoteDevices(offer, service);
    object->finishRegistration();
    return object;
}

} // namespace OHOS::Host
