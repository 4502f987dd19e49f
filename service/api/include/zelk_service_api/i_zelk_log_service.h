// The log service's operations, as its client library offers them.
#ifndef SERVICE_API_ZELK_SERVICE_API_I_ZELK_LOG_SERVICE_H
#define SERVICE_API_ZELK_SERVICE_API_I_ZELK_LOG_SERVICE_H

#include <cstdint>
#include <string>
#include <vector>

#include "refbase.h"

namespace OHOS::HiviewDFX {

// A connection to the log service. The order of the operations is the order of their slots and part of the binary
// interface: new ones go to the end, and the destructor is left implicit so that it follows them. Reserved slots are
// operations of the service that this library does not offer.
//
// Every operation returns the service's code, 0 for success, and may be called from any thread, even from several at
// once. Lists of configuration items hold one text per item, of the form {"configKey":"KEY","value":VALUE}. What the
// service answers is written to the reference arguments; a call that did not reach it leaves them untouched.
class __attribute__((visibility("default"))) IZelkLogService : public virtual RefBase {
public:
    virtual void Reserved1() {}
    virtual void Reserved2() {}
    virtual void Reserved3() {}

    virtual int32_t GetModemLogConfig(std::vector<std::string>& keys, std::vector<std::string>& values) = 0;
    virtual int32_t GetModemLogDirectPackConfig(std::string& config) = 0;
    virtual int32_t GetModemLogLogMasks(std::vector<std::string>& masks) = 0;
    virtual int32_t GetModemLogStatus(bool& status) = 0;
    virtual int32_t HandleModemLogSwitch(bool on, bool& result) = 0;
    virtual int32_t HandleModemLogSwitch(bool on, std::vector<std::string>& configs, bool& result) = 0;
    virtual int32_t SendModemLogCommand(std::string command, bool& result) = 0;
    virtual int32_t ChangeModemLogConfig(std::vector<std::string>& configs, bool& result) = 0;

    virtual int32_t GetTcpdumpStatus(bool& status) = 0;
    virtual int32_t GetTcpdumpConfig(std::vector<std::string> keys, std::vector<std::string>& values) = 0;
    virtual int32_t ChangeTcpdumpConfig(std::vector<std::string>& configs, bool& result) = 0;
    virtual int32_t HandleTcpdumpSwitch(bool on, bool& result) = 0;
    virtual int32_t HandleTcpdumpSwitch(bool on, std::vector<std::string>& configs, bool& result) = 0;

    virtual void Reserved17() {}
    virtual void Reserved18() {}
    virtual void Reserved19() {}
    virtual void Reserved20() {}

    virtual int32_t HandleBluetoothCallPcmLogSwitch(bool on) = 0;
    virtual int32_t FetchRemoteDevicesLogs(const std::string& request, std::string& response, int64_t value) = 0;
    virtual int32_t QueryRemoteDevicesLogs(const std::string& request, std::string& response) = 0;
    virtual int32_t GetRemoteDevicesList(std::string& response) = 0;
    virtual int32_t QueryProtocolData(const std::string& request, std::string& response) = 0;
};

} // namespace OHOS::HiviewDFX

#endif // SERVICE_API_ZELK_SERVICE_API_I_ZELK_LOG_SERVICE_H
