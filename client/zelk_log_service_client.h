// The module's client of the log service.
#ifndef ZELKLOGSERVICE_CLIENT_ZELK_LOG_SERVICE_CLIENT_H
#define ZELKLOGSERVICE_CLIENT_ZELK_LOG_SERVICE_CLIENT_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "config/config_info.h"
#include "singleton.h"
#include "zelk_service_api/client.h"

namespace OHOS::HiviewDFX {

// The process-wide client of the log service, reached through DelayedSingleton<ZelkLogServiceClient>::GetInstance().
//
// Each method asks for the service's proxy anew, makes one request and returns the service's code unchanged: 0 for
// success. The client itself returns these codes, and then leaves the reference arguments untouched:
//   7  an empty list of keys or items; no request is made;
//   3  the service cannot be reached, 1 in the four methods for remote devices.
// Otherwise the service fills the reference arguments, whatever its code.
//
// Methods run on worker threads, several at once on the one instance; each blocks until the service has answered. The
// client has no state and takes no lock.
class ZelkLogServiceClient : public Client, public DelayedSingleton<ZelkLogServiceClient> {
public:
    int32_t GetModemLogConfig(std::vector<std::string>& keys, std::vector<std::string>& values);
    int32_t GetModemLogDirectPackConfig(std::string& config);
    int32_t GetModemLogLogMasks(std::vector<std::string>& masks);
    int32_t GetModemLogStatus(bool& status);
    int32_t HandleModemLogSwitch(bool on, bool& result);
    int32_t GetTcpdumpStatus(bool& status);
    int32_t GetTcpdumpConfig(std::vector<std::string> keys, std::vector<std::string>& values);
    int32_t HandleTcpdumpSwitch(bool on, bool& result);
    int32_t HandleBluetoothCallPcmLogSwitch(bool on);

    // Each item is sent as its JSON parameter text (ConfigInfo::GetJsonParams), one text per item, in list order.
    // Only ChangeTcpdumpConfig does not log an empty list.
    int32_t HandleModemLogSwitch(bool on, std::vector<std::shared_ptr<ConfigInfo>> configs, bool& result);
    int32_t ChangeModemLogConfig(std::vector<std::shared_ptr<ConfigInfo>> configs, bool& result);
    int32_t SendModemLogCommand(std::shared_ptr<ConfigInfo> command, bool& result);
    int32_t HandleTcpdumpSwitch(bool on, std::vector<std::shared_ptr<ConfigInfo>>& configs, bool& result);
    int32_t ChangeTcpdumpConfig(std::vector<std::shared_ptr<ConfigInfo>>& configs, bool& result);

    // The texts are in the service's own format and passed on unchanged.
    int32_t FetchRemoteDevicesLogs(const std::string& request, std::string& response, int64_t value);
    int32_t QueryRemoteDevicesLogs(const std::string& request, std::string& response);
    int32_t GetRemoteDevicesList(std::string& response);
    int32_t QueryProtocolData(const std::string& request, std::string& response);

private:
    // Makes `request` of the service and returns its code; returns `unreachable` when there is no service.
    template <typename Request>
    int32_t Ask(const char* method, int32_t unreachable, Request request);
};

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_CLIENT_ZELK_LOG_SERVICE_CLIENT_H
