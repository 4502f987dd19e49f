// The client's proxy of a log service on D-Bus.
#ifndef SERVICE_DBUS_LOG_SERVICE_PROXY_H
#define SERVICE_DBUS_LOG_SERVICE_PROXY_H

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bus_pool.h"
#include "zelk_service_api/i_zelk_log_service.h"

namespace OHOS::Host {

// Every operation returns the service's code, or an IpcCode when the call breaks off. It takes no longer than
// the limit, including the time that finding the service took. Nothing here throws std::bad_alloc.
class LogServiceProxy : public HiviewDFX::IZelkLogService {
public:
    using Duration = std::chrono::steady_clock::duration;

    // The service on the bus of `pool`, started if the bus can; null when its name has no owner or there is no bus.
    static sptr<HiviewDFX::IZelkLogService> Find(const std::shared_ptr<BusPool>& pool, Duration limit);

    int32_t GetModemLogConfig(std::vector<std::string>& keys, std::vector<std::string>& values) override;
    int32_t GetModemLogDirectPackConfig(std::string& config) override;
    int32_t GetModemLogLogMasks(std::vector<std::string>& masks) override;
    int32_t GetModemLogStatus(bool& status) override;
    int32_t HandleModemLogSwitch(bool on, bool& result) override;
    int32_t HandleModemLogSwitch(bool on, std::vector<std::string>& configs, bool& result) override;
    int32_t SendModemLogCommand(std::string command, bool& result) override;
    int32_t ChangeModemLogConfig(std::vector<std::string>& configs, bool& result) override;

    int32_t GetTcpdumpStatus(bool& status) override;
    int32_t GetTcpdumpConfig(std::vector<std::string> keys, std::vector<std::string>& values) override;
    int32_t ChangeTcpdumpConfig(std::vector<std::string>& configs, bool& result) override;
    int32_t HandleTcpdumpSwitch(bool on, bool& result) override;
    int32_t HandleTcpdumpSwitch(bool on, std::vector<std::string>& configs, bool& result) override;

    int32_t HandleBluetoothCallPcmLogSwitch(bool on) override;
    int32_t FetchRemoteDevicesLogs(const std::string& request, std::string& response, int64_t value) override;
    int32_t QueryRemoteDevicesLogs(const std::string& request, std::string& response) override;
    int32_t GetRemoteDevicesList(std::string& response) override;
    int32_t QueryProtocolData(const std::string& request, std::string& response) override;

private:
    LogServiceProxy(std::shared_ptr<BusPool> pool, Duration limit, Duration spent)
        : pool_(std::move(pool)), limit_(limit), spent_(spent)
    {
    }

    template <typename Answer, typename... Arguments>
    int32_t Call(const char* method, Answer& answer, const Arguments&... arguments);

    const std::shared_ptr<BusPool> pool_;
    const Duration limit_;
    // The time that finding the service took, until the first call takes it into account.
    std::atomic<Duration> spent_;
};

} // namespace OHOS::Host

#endif // SERVICE_DBUS_LOG_SERVICE_PROXY_H
