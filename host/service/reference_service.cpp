#include "reference_service.h"

#include <string_view>
#include <utility>

#include "item_text.h"

namespace OHOS::Host {

namespace {

// The items that `texts` hold, as views into them; nothing when one of the texts is no item.
std::optional<std::vector<Item>> ParseItems(const std::vector<std::string>& texts)
{
    std::vector<Item> items;
    items.reserve(texts.size());
    for (const std::string& text : texts) {
        const std::optional<Item> item = ParseItem(text);
        if (!item) {
            return std::nullopt;
        }
        items.push_back(*item);
    }
    return items;
}

} // namespace

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
    result = ParseItem(command).has_value();
    if (!result) {
        return CODE_BAD_ITEM;
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    lastCommand_ = std::move(command);
    return 0;
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
    const std::lock_guard<std::mutex> lock(mutex_);
    bluetoothCallPcmOn_ = on;
    return 0;
}

int32_t ReferenceService::FetchRemoteDevicesLogs(const std::string& request, std::string& response, int64_t value)
{
    response = R"({"request":)" + JsonString(request) + R"(,"value":)" + std::to_string(value) + R"(,"logs":[]})";
    return 0;
}

int32_t ReferenceService::QueryRemoteDevicesLogs(const std::string& request, std::string& response)
{
    response = R"({"request":)" + JsonString(request) + R"(,"logs":[]})";
    return 0;
}

int32_t ReferenceService::GetRemoteDevicesList(std::string& response)
{
    response = R"({"devices":[]})";
    return 0;
}

int32_t ReferenceService::QueryProtocolData(const std::string& request, std::string& response)
{
    response = R"({"request":)" + JsonString(request) + R"(,"data":""})";
    return 0;
}

int32_t ReferenceService::Status(const Log& log, bool& status)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    status = log.on;
    return 0;
}

int32_t ReferenceService::Query(const Log& log, const std::vector<std::string>& keys, std::vector<std::string>& values)
{
    std::vector<std::string> answer;
    answer.reserve(keys.size());
    const std::lock_guard<std::mutex> lock(mutex_);
    for (const std::string& key : keys) {
        const auto found = log.values.find(key);
        const std::string_view value = found == log.values.end() ? std::string_view("{}") : found->second;
        answer.push_back(R"({"configKey":)" + JsonString(key) + R"(,"value":)" + JsonString(value) + "}");
    }
    values = std::move(answer);
    return 0;
}

int32_t ReferenceService::Change(Log& log, std::optional<bool> on, const std::vector<std::string>& configs,
                                 bool& result)
{
    const std::optional<std::vector<Item>> items = ParseItems(configs);
    result = items.has_value();
    if (!items) {
        return CODE_BAD_ITEM;
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    for (const Item& item : *items) {
        log.values.insert_or_assign(std::string(item.key), item.value);
    }
    log.on = on.value_or(log.on);
    return 0;
}

} // namespace OHOS::Host
