#include "reference_service.h"

#include <cstdint>
#include <string_view>
#include <utility>

#include "item_text.h"
#include "service_limits.h"

namespace OHOS::Host {

namespace {

// {"request":REQUEST,TAIL
int32_t Echo(const std::string& request, const std::string& tail, std::string& response)
{
    response.clear();
    if (request.size() > MAX_REQUEST_SIZE) {
        return CODE_REFUSED;
    }
    std::string text = R"({"request":)" + JsonString(request, MAX_ANSWER_SIZE) + tail;
    if (text.size() > MAX_ANSWER_SIZE) {
        return CODE_REFUSED;
    }
    response = std::move(text);
    return 0;
}

} // namespace

Outcome ReferenceService::Call(const Operation& operation, const Arguments& arguments)
{
    ArgumentValues values = Copies(arguments);
    return operation.call(*this, values);
}

int32_t ReferenceService::GetModemLogConfig(std::vector<std::string>& keys, std::vector<std::string>& values)
{
    return Query(modem_, keys, values);
}

int32_t ReferenceService::GetModemLogDirectPackConfig(std::string& config)
{
    config = R"({"directPack":false})";
    return 0;
}

int32_t ReferenceService::GetModemLogLogMasks(std::vector<std::string>& masks)
{
    masks = {R"({"configKey":"ap","value":"0x0"})", R"({"configKey":"cp","value":"0x0"})"};
    return 0;
}

int32_t ReferenceService::GetModemLogStatus(bool& status)
{
    return Status(modem_, status);
}

int32_t ReferenceService::HandleModemLogSwitch(bool on, bool& result)
{
    return Change(modem_, on, {}, result);
}

int32_t ReferenceService::HandleModemLogSwitch(bool on, std::vector<std::string>& configs, bool& result)
{
    return Change(modem_, on, configs, result);
}

int32_t ReferenceService::SendModemLogCommand(std::string command, bool& result)
{
    result = command.size() <= MAX_ITEM_SIZE && ParseItem(command);
    return result ? 0 : CODE_REFUSED;
}

int32_t ReferenceService::ChangeModemLogConfig(std::vector<std::string>& configs, bool& result)
{
    return Change(modem_, std::nullopt, configs, result);
}

int32_t ReferenceService::GetTcpdumpStatus(bool& status)
{
    return Status(tcpdump_, status);
}

int32_t ReferenceService::GetTcpdumpConfig(std::vector<std::string> keys, std::vector<std::string>& values)
{
    return Query(tcpdump_, keys, values);
}

int32_t ReferenceService::ChangeTcpdumpConfig(std::vector<std::string>& configs, bool& result)
{
    return Change(tcpdump_, std::nullopt, configs, result);
}

int32_t ReferenceService::HandleTcpdumpSwitch(bool on, bool& result)
{
    return Change(tcpdump_, on, {}, result);
}

int32_t ReferenceService::HandleTcpdumpSwitch(bool on, std::vector<std::string>& configs, bool& result)
{
    return Change(tcpdump_, on, configs, result);
}

int32_t ReferenceService::HandleBluetoothCallPcmLogSwitch(bool on)
{
    isBluetoothCallPcmLogOn_ = on;
    return 0;
}

int32_t ReferenceService::FetchRemoteDevicesLogs(const std::string& request, std::string& response, int64_t value)
{
    return Echo(request, R"(,"value":)" + std::to_string(value) + R"(,"logs":[]})", response);
}

int32_t ReferenceService::QueryRemoteDevicesLogs(const std::string& request, std::string& response)
{
    return Echo(request, R"(,"logs":[]})", response);
}

int32_t ReferenceService::GetRemoteDevicesList(std::string& response)
{
    response = R"({"devices":[]})";
    return 0;
}

int32_t ReferenceService::QueryProtocolData(const std::string& request, std::string& response)
{
    return Echo(request, R"(,"data":""})", response);
}

Switches ReferenceService::State()
{
    Switches switches;
    Status(modem_, switches.modemLog);
    Status(tcpdump_, switches.tcpdump);
    switches.bluetoothCallPcmLog = isBluetoothCallPcmLogOn_;
    return switches;
}

std::optional<ReferenceService::Values> ReferenceService::ParseItems(const std::vector<std::string>& texts)
{
    Values items;
    size_t size = 0;
    for (const std::string& text : texts) {
        size += text.size();
        const std::optional<Item> item = ParseItem(text);
        if (!item || text.size() > MAX_ITEM_SIZE || size > MAX_REQUEST_SIZE) {
            return std::nullopt;
        }
        items.insert_or_assign(std::string(item->key), item->value);
        if (items.size() > MAX_KEYS) {
            return std::nullopt;
        }
    }
    return items;
}

std::optional<size_t> ReferenceService::SizeWith(const Log& log, const Values& items)
{
    size_t keys = log.values.size();
    size_t size = log.size;
    for (const auto& [key, value] : items) {
        const auto kept = log.values.find(key);
        if (kept == log.values.end()) {
            ++keys;
            size += key.size() + value.size();
        } else {
            size = size - kept->second.size() + value.size();
        }
    }
    return keys <= MAX_KEYS && size <= MAX_LOG_SIZE ? std::optional(size) : std::nullopt;
}

int32_t ReferenceService::Status(Log& log, bool& status)
{
    const std::lock_guard<std::mutex> lock(log.mutex);
    status = log.on;
    return 0;
}

int32_t ReferenceService::Query(Log& log, const std::vector<std::string>& keys, std::vector<std::string>& values)
{
    values.clear();
    std::vector<std::string> answer;
    size_t size = 0;
    const std::lock_guard<std::mutex> lock(log.mutex);
    for (const std::string& key : keys) {
        // A key is part of its answer, so a request that is too large has an answer that is too large.
        if (size + key.size() > MAX_ANSWER_SIZE) {
            return CODE_REFUSED;
        }
        const auto found = log.values.find(key);
        const std::string_view value = found == log.values.end() ? std::string_view("{}") : found->second;
        answer.push_back(R"({"configKey":)" + JsonString(key, MAX_ANSWER_SIZE) + R"(,"value":)" + JsonString(value) +
                         "}");
        size += answer.back().size();
    }
    if (size > MAX_ANSWER_SIZE) {
        return CODE_REFUSED;
    }
    values = std::move(answer);
    return 0;
}

int32_t ReferenceService::Change(Log& log, std::optional<bool> on, const std::vector<std::string>& configs,
                                 bool& result)
{
    result = false;
    std::optional<Values> items = ParseItems(configs);
    if (!items) {
        return CODE_REFUSED;
    }
    const std::lock_guard<std::mutex> lock(log.mutex);
    const std::optional<size_t> size = SizeWith(log, *items);
    if (!size) {
        return CODE_REFUSED;
    }
    // Nothing below allocates, so either all items are applied or none.
    for (auto& [key, value] : *items) {
        const auto kept = log.values.find(key);
        if (kept != log.values.end()) {
            kept->second.swap(value);
        }
    }
    log.values.merge(*items);
    log.size = *size;
    log.on = on.value_or(log.on);
    result = true;
    return 0;
}

} // namespace OHOS::Host
