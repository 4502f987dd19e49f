#include "scripted_service.h"

#include <atomic>
#include <chrono>
#include <mutex>
#include <string>
#include <thread>

#include "zelk_service_api/proxy_source.h"

namespace ZelkTest {

namespace {

std::mutex g_mutex;
Json::Value g_script;
Json::Value g_requests(Json::arrayValue);
std::atomic<int> g_proxyCount{0};

Json::Value ToJson(const std::vector<std::string>& texts)
{
    Json::Value list(Json::arrayValue);
    for (const std::string& text : texts) {
        list.append(text);
    }
    return list;
}

// UTF-8 of characters up to U+00FF to single bytes.
std::string Latin1(const std::string& utf8)
{
    std::string bytes;
    for (size_t i = 0; i < utf8.size(); ++i) {
        const auto lead = static_cast<unsigned char>(utf8[i]);
        if (lead < 0x80) {
            bytes += utf8[i];
        } else {
            bytes += static_cast<char>(((lead & 0x03U) << 6U) | (static_cast<unsigned char>(utf8[++i]) & 0x3FU));
        }
    }
    return bytes;
}

class ScriptedService : public OHOS::HiviewDFX::IZelkLogService {
public:
    int32_t GetModemLogConfig(std::vector<std::string>& keys, std::vector<std::string>& values) override
    {
        return Answer(values, "GetModemLogConfig", ToJson(keys));
    }
    int32_t GetModemLogDirectPackConfig(std::string& config) override
    {
        return Answer(config, "GetModemLogDirectPackConfig");
    }
    int32_t GetModemLogLogMasks(std::vector<std::string>& masks) override
    {
        return Answer(masks, "GetModemLogLogMasks");
    }
    int32_t GetModemLogStatus(bool& status) override
    {
        return Answer(status, "GetModemLogStatus");
    }
    int32_t HandleModemLogSwitch(bool on, bool& result) override
    {
        return Answer(result, "HandleModemLogSwitch", on);
    }
    int32_t HandleModemLogSwitch(bool on, std::vector<std::string>& configs, bool& result) override
    {
        return Answer(result, "HandleModemLogSwitch", on, ToJson(configs));
    }
    int32_t SendModemLogCommand(std::string command, bool& result) override
    {
        return Answer(result, "SendModemLogCommand", command);
    }
    int32_t ChangeModemLogConfig(std::vector<std::string>& configs, bool& result) override
    {
        return Answer(result, "ChangeModemLogConfig", ToJson(configs));
    }
    int32_t GetTcpdumpStatus(bool& status) override
    {
        return Answer(status, "GetTcpdumpStatus");
    }
    int32_t GetTcpdumpConfig(std::vector<std::string> keys, std::vector<std::string>& values) override
    {
        return Answer(values, "GetTcpdumpConfig", ToJson(keys));
    }
    int32_t ChangeTcpdumpConfig(std::vector<std::string>& configs, bool& result) override
    {
        return Answer(result, "ChangeTcpdumpConfig", ToJson(configs));
    }
    int32_t HandleTcpdumpSwitch(bool on, bool& result) override
    {
        return Answer(result, "HandleTcpdumpSwitch", on);
    }
    int32_t HandleTcpdumpSwitch(bool on, std::vector<std::string>& configs, bool& result) override
    {
        return Answer(result, "HandleTcpdumpSwitch", on, ToJson(configs));
    }
    int32_t HandleBluetoothCallPcmLogSwitch(bool on) override
    {
        bool unused = false;
        return Answer(unused, "HandleBluetoothCallPcmLogSwitch", on);
    }
    int32_t FetchRemoteDevicesLogs(const std::string& request, std::string& response, int64_t value) override
    {
        // As text: JavaScript's numbers are too narrow for some.
        return Answer(response, "FetchRemoteDevicesLogs", request, std::to_string(value));
    }
    int32_t QueryRemoteDevicesLogs(const std::string& request, std::string& response) override
    {
        return Answer(response, "QueryRemoteDevicesLogs", request);
    }
    int32_t GetRemoteDevicesList(std::string& response) override
    {
        return Answer(response, "GetRemoteDevicesList");
    }
    int32_t QueryProtocolData(const std::string& request, std::string& response) override
    {
        return Answer(response, "QueryProtocolData", request);
    }

private:
    // Out-arguments are touched only where the script has an answer.
    template <typename T, typename... Args>
    int32_t Answer(T& out, const char* operation, const Args&... arguments)
    {
        Json::Value request(Json::arrayValue);
        request.append(operation);
        (request.append(Json::Value(arguments)), ...);
        Json::Value entry;
        {
            const std::lock_guard<std::mutex> lock(g_mutex);
            g_requests.append(request);
            if (g_script.isMember(operation)) {
                entry = g_script[operation];
            }
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(entry.get("delay", 0).asInt()));
        if (entry.isMember("answer")) {
            Write(entry["answer"], entry.get("latin1", false).asBool(), out);
        }
        return entry.get("code", 0).asInt();
    }

    static void Write(const Json::Value& answer, bool, bool& out)
    {
        out = answer.asBool();
    }
    static void Write(const Json::Value& answer, bool isLatin1, std::string& out)
    {
        out = isLatin1 ? Latin1(answer.asString()) : answer.asString();
    }
    static void Write(const Json::Value& answer, bool isLatin1, std::vector<std::string>& out)
    {
        out.clear();
        for (const Json::Value& text : answer) {
            Write(text, isLatin1, out.emplace_back());
        }
    }
};

} // namespace

void SetScriptedService(const Json::Value& script)
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    g_script = script;
    OHOS::sptr<OHOS::HiviewDFX::IZelkLogService> service;
    if (!script.isNull()) {
        service = OHOS::sptr<ScriptedService>::MakeSptr();
    }
    OHOS::Host::SetProxySource([service] {
        g_proxyCount++;
        return service;
    });
}

void UnsetScriptedService()
{
    OHOS::Host::SetProxySource({});
}

Json::Value TakeRequests()
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    Json::Value requests(Json::arrayValue);
    requests.swap(g_requests);
    return requests;
}

int TakeProxyCount()
{
    return g_proxyCount.exchange(0);
}

} // namespace ZelkTest
