// The reference log service, which keeps its state in memory.
#ifndef SERVICE_REFERENCE_REFERENCE_SERVICE_H
#define SERVICE_REFERENCE_REFERENCE_SERVICE_H

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "host/utils/thread_safety.h"
#include "service/api/operations.h"
#include "switches.h"

namespace OHOS::Host {

// Every operation answers 0; or CODE_REFUSED, with `false` or an empty answer, for a text that is not a configuration
// item or a call that exceeds the limits of service_limits.h. A refused call has no effect. Operations may be called
// from any thread; each takes effect as a whole, or not at all when it throws std::bad_alloc.
class ReferenceService : public LogService {
public:
    Outcome Call(const Operation& operation, const Arguments& arguments) override;

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

    // Any thread.
    Switches State();

private:
    // The values of items, by key.
    using Values = std::map<std::string, std::string, std::less<>>;

    // One log with a switch and a configuration: modem log or packet capture.
    struct Log {
        std::mutex mutex;
        bool on ZELK_GUARDED_BY(mutex) = false;
        Values values ZELK_GUARDED_BY(mutex);
        size_t size ZELK_GUARDED_BY(mutex) = 0; // Of all keys and values.
    };

    // The items in `texts`, the last one of each key; nothing when they are refused.
    static std::optional<Values> ParseItems(const std::vector<std::string>& texts);
    // The size that `log` would have with `items` applied; nothing when it would exceed a limit.
    static std::optional<size_t> SizeWith(const Log& log, const Values& items) ZELK_REQUIRES(log.mutex);

    static int32_t Status(Log& log, bool& status);
    static int32_t Query(Log& log, const std::vector<std::string>& keys, std::vector<std::string>& values);
    // Applies the items and then, if `on` is given, the switch.
    static int32_t Change(Log& log, std::optional<bool> on, const std::vector<std::string>& configs, bool& result);

    // The last command is not stored: nothing queries it.
    Log modem_;
    Log tcpdump_;
    std::atomic<bool> isBluetoothCallPcmLogOn_{false};
};

} // namespace OHOS::Host

#endif // SERVICE_REFERENCE_REFERENCE_SERVICE_H
