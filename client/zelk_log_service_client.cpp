#include "client/zelk_log_service_client.h"

#include <utility>

#include "common/module_log.h"

namespace OHOS::HiviewDFX {

namespace {

constexpr int32_t SERVICE_UNAVAILABLE = 3;
constexpr int32_t REMOTE_SERVICE_UNAVAILABLE = 1;
constexpr int32_t EMPTY_LIST = 7;

int32_t RefuseEmptyList(const char* method)
{
    ZELK_LOG(LOG_WARN, TAG_FRAMEWORK, "[%{public}s]\"configs is empty.\"", method);
    return EMPTY_LIST;
}

std::vector<std::string> JsonParams(const std::vector<std::shared_ptr<ConfigInfo>>& configs)
{
    std::vector<std::string> texts;
    texts.reserve(configs.size());
    for (const std::shared_ptr<ConfigInfo>& config : configs) {
        texts.push_back(config->GetJsonParams());
    }
    return texts;
}

} // namespace

template <typename Request>
int32_t ZelkLogServiceClient::Ask(const char* method, int32_t unreachable, Request request)
{
    const sptr<IZelkLogService> proxy = GetProxy();
    if (proxy == nullptr) {
        ZELK_LOG(LOG_WARN, TAG_FRAMEWORK, "[%{public}s]\"get proxy fail.\"", method);
        return unreachable;
    }
    return request(*proxy);
}

int32_t ZelkLogServiceClient::GetModemLogConfig(std::vector<std::string>& keys, std::vector<std::string>& values)
{
    if (keys.empty()) {
        return RefuseEmptyList("GetModemLogConfig");
    }
    return Ask("GetModemLogConfig", SERVICE_UNAVAILABLE,
               [&](IZelkLogService& service) { return service.GetModemLogConfig(keys, values); });
}

int32_t ZelkLogServiceClient::GetModemLogDirectPackConfig(std::string& config)
{
    return Ask("GetModemLogDirectPackConfig", SERVICE_UNAVAILABLE,
               [&](IZelkLogService& service) { return service.GetModemLogDirectPackConfig(config); });
}

int32_t ZelkLogServiceClient::GetModemLogLogMasks(std::vector<std::string>& masks)
{
    return Ask("GetModemLogLogMasks", SERVICE_UNAVAILABLE,
               [&](IZelkLogService& service) { return service.GetModemLogLogMasks(masks); });
}

int32_t ZelkLogServiceClient::GetModemLogStatus(bool& status)
{
    ZELK_INFO("[ZelkLogServiceClient] GetModemLogStatus, callbackStatus=%{public}d", status);
    return Ask("GetModemLogStatus", SERVICE_UNAVAILABLE, [&](IZelkLogService& service) {
        const int32_t code = service.GetModemLogStatus(status);
        ZELK_INFO("[ZelkLogServiceClient] GetModemLogStatus, result=%{public}d", code);
        return code;
    });
}

int32_t ZelkLogServiceClient::HandleModemLogSwitch(bool on, bool& result)
{
    return Ask("HandleModemLogSwitch", SERVICE_UNAVAILABLE,
               [&](IZelkLogService& service) { return service.HandleModemLogSwitch(on, result); });
}

int32_t ZelkLogServiceClient::GetTcpdumpStatus(bool& status)
{
    return Ask("GetTcpdumpStatus", SERVICE_UNAVAILABLE,
               [&](IZelkLogService& service) { return service.GetTcpdumpStatus(status); });
}

int32_t ZelkLogServiceClient::GetTcpdumpConfig(std::vector<std::string> keys, std::vector<std::string>& values)
{
    if (keys.empty()) {
        return RefuseEmptyList("GetTcpdumpConfig");
    }
    return Ask("GetTcpdumpConfig", SERVICE_UNAVAILABLE,
               [&](IZelkLogService& service) { return service.GetTcpdumpConfig(std::move(keys), values); });
}

int32_t ZelkLogServiceClient::HandleTcpdumpSwitch(bool on, bool& result)
{
    return Ask("HandleTcpdumpSwitch", SERVICE_UNAVAILABLE,
               [&](IZelkLogService& service) { return service.HandleTcpdumpSwitch(on, result); });
}

int32_t ZelkLogServiceClient::HandleBluetoothCallPcmLogSwitch(bool on)
{
    return Ask("HandleBluetoothCallPcmLogSwitch", SERVICE_UNAVAILABLE,
               [&](IZelkLogService& service) { return service.HandleBluetoothCallPcmLogSwitch(on); });
}

int32_t ZelkLogServiceClient::HandleModemLogSwitch(bool on, std::vector<std::shared_ptr<ConfigInfo>> configs,
                                                   bool& result)
{
    if (configs.empty()) {
        return RefuseEmptyList("HandleModemLogSwitch");
    }
    return Ask("HandleModemLogSwitch", SERVICE_UNAVAILABLE, [&](IZelkLogService& service) {
        std::vector<std::string> texts = JsonParams(configs);
        return service.HandleModemLogSwitch(on, texts, result);
    });
}

int32_t ZelkLogServiceClient::ChangeModemLogConfig(std::vector<std::shared_ptr<ConfigInfo>> configs, bool& result)
{
    if (configs.empty()) {
        return RefuseEmptyList("ChangeModemLogConfig");
    }
    return Ask("ChangeModemLogConfig", SERVICE_UNAVAILABLE, [&](IZelkLogService& service) {
        std::vector<std::string> texts = JsonParams(configs);
        return service.ChangeModemLogConfig(texts, result);
    });
}

int32_t ZelkLogServiceClient::SendModemLogCommand(std::shared_ptr<ConfigInfo> command, bool& result)
{
    return Ask("SendModemLogCommand", SERVICE_UNAVAILABLE,
               [&](IZelkLogService& service) { return service.SendModemLogCommand(command->GetJsonParams(), result); });
}

int32_t ZelkLogServiceClient::HandleTcpdumpSwitch(bool on, std::vector<std::shared_ptr<ConfigInfo>>& configs,
                                                  bool& result)
{
    if (configs.empty()) {
        return RefuseEmptyList("HandleTcpdumpSwitch");
    }
    return Ask("HandleTcpdumpSwitch", SERVICE_UNAVAILABLE, [&](IZelkLogService& service) {
        std::vector<std::string> texts = JsonParams(configs);
        return service.HandleTcpdumpSwitch(on, texts, result);
    });
}

int32_t ZelkLogServiceClient::ChangeTcpdumpConfig(std::vector<std::shared_ptr<ConfigInfo>>& configs, bool& result)
{
    if (configs.empty()) {
        // Not logged here, unlike in the other methods.
        return EMPTY_LIST;
    }
    return Ask("ChangeTcpdumpConfig", SERVICE_UNAVAILABLE, [&](IZelkLogService& service) {
        std::vector<std::string> texts = JsonParams(configs);
        return service.ChangeTcpdumpConfig(texts, result);
    });
}

int32_t ZelkLogServiceClient::FetchRemoteDevicesLogs(const std::string& request, std::string& response, int64_t value)
{
    return Ask("FetchRemoteDevicesLogs", REMOTE_SERVICE_UNAVAILABLE,
               [&](IZelkLogService& service) { return service.FetchRemoteDevicesLogs(request, response, value); });
}

int32_t ZelkLogServiceClient::QueryRemoteDevicesLogs(const std::string& request, std::string& response)
{
    return Ask("QueryRemoteDevicesLogs", REMOTE_SERVICE_UNAVAILABLE,
               [&](IZelkLogService& service) { return service.QueryRemoteDevicesLogs(request, response); });
}

int32_t ZelkLogServiceClient::GetRemoteDevicesList(std::string& response)
{
    return Ask("GetRemoteDevicesList", REMOTE_SERVICE_UNAVAILABLE,
               [&](IZelkLogService& service) { return service.GetRemoteDevicesList(response); });
}

int32_t ZelkLogServiceClient::QueryProtocolData(const std::string& request, std::string& response)
{
    return Ask("QueryProtocolData", REMOTE_SERVICE_UNAVAILABLE, [&](IZelkLogService& service) {
        // At ERROR level, although nothing is wrong.
        ZELK_LOG(LOG_ERROR, TAG_FRAMEWORK, "[%{public}s]\"get proxy success. request:%{public}s\"", "QueryProtocolData",
                 request.c_str());
        return service.QueryProtocolData(request, response);
    });
}

} // namespace OHOS::HiviewDFX
