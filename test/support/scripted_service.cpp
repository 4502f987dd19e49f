#include "scripted_service.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>

#include "zelk_service_api/proxy_source.h"

namespace ZelkTest {

namespace {

std::mutex g_mutex;
Json::Value g_script;
Json::Value g_requests(Json::arrayValue);
std::atomic<int> g_proxyCount{0};

using Text = const std::string;
using Texts = std::vector<std::string>;

Json::Value List(const Texts& texts)
{
    Json::Value list(Json::arrayValue);
    std::for_each(texts.begin(), texts.end(), [&](Text& text) { list.append(text); });
    return list;
}

// A text of the script; for Latin-1 its UTF-8, of characters up to U+00FF, becomes single bytes.
std::string Encoded(Text& utf8, bool isLatin1)
{
    std::string bytes;
    for (size_t i = 0; i < utf8.size(); ++i) {
        const bool isLead = isLatin1 && (utf8[i] & 0x80) != 0;
        bytes += isLead ? static_cast<char>((utf8[i] & 0x03) << 6 | (utf8[i + 1] & 0x3F)) : utf8[i];
        i += isLead ? 1 : 0;
    }
    return bytes;
}

void Write(const Json::Value& answer, bool, bool& out)
{
    out = answer.asBool();
}
void Write(const Json::Value& answer, bool isLatin1, std::string& out)
{
    out = Encoded(answer.asString(), isLatin1);
}
void Write(const Json::Value& answer, bool isLatin1, Texts& out)
{
    out.resize(answer.size());
    for (Json::ArrayIndex i = 0; i < answer.size(); ++i) {
        Write(answer[i], isLatin1, out[i]);
    }
}

// Out-arguments are touched only where the script has an answer.
template <typename Out, typename... Args>
int32_t Answer(Out& out, const char* operation, const Args&... arguments)
{
    Json::Value request(Json::arrayValue);
    request.append(operation);
    (request.append(Json::Value(arguments)), ...);
    std::unique_lock<std::mutex> lock(g_mutex);
    g_requests.append(request);
    const Json::Value entry = g_script.get(operation, Json::Value());
    lock.unlock();
    std::this_thread::sleep_for(std::chrono::milliseconds(entry.get("delay", 0).asInt()));
    if (entry.isMember("answer")) {
        Write(entry["answer"], entry.get("latin1", false).asBool(), out);
    }
    return entry.get("code", 0).asInt();
}

struct ScriptedService : OHOS::HiviewDFX::IZelkLogService {
    int32_t GetModemLogConfig(Texts& in, Texts& out) override
    {
        return Answer(out, __func__, List(in));
    }
    int32_t GetModemLogDirectPackConfig(std::string& out) override
    {
        return Answer(out, __func__);
    }
    int32_t GetModemLogLogMasks(Texts& out) override
    {
        return Answer(out, __func__);
    }
    int32_t GetModemLogStatus(bool& out) override
    {
        return Answer(out, __func__);
    }
    int32_t HandleModemLogSwitch(bool on, bool& out) override
    {
        return Answer(out, __func__, on);
    }
    int32_t HandleModemLogSwitch(bool on, Texts& in, bool& out) override
    {
        return Answer(out, __func__, on, List(in));
    }
    int32_t SendModemLogCommand(std::string in, bool& out) override
    {
        return Answer(out, __func__, in);
    }
    int32_t ChangeModemLogConfig(Texts& in, bool& out) override
    {
        return Answer(out, __func__, List(in));
    }
    int32_t GetTcpdumpStatus(bool& out) override
    {
        return Answer(out, __func__);
    }
    int32_t GetTcpdumpConfig(Texts in, Texts& out) override
    {
        return Answer(out, __func__, List(in));
    }
    int32_t ChangeTcpdumpConfig(Texts& in, bool& out) override
    {
        return Answer(out, __func__, List(in));
    }
    int32_t HandleTcpdumpSwitch(bool on, bool& out) override
    {
        return Answer(out, __func__, on);
    }
    int32_t HandleTcpdumpSwitch(bool on, Texts& in, bool& out) override
    {
        return Answer(out, __func__, on, List(in));
    }
    int32_t HandleBluetoothCallPcmLogSwitch(bool on) override
    {
        bool unused;
        return Answer(unused, __func__, on);
    }
    // The number goes as text: JavaScript's are too narrow for some.
    int32_t FetchRemoteDevicesLogs(Text& in, std::string& out, int64_t value) override
    {
        return Answer(out, __func__, in, std::to_string(value));
    }
    int32_t QueryRemoteDevicesLogs(Text& in, std::string& out) override
    {
        return Answer(out, __func__, in);
    }
    int32_t GetRemoteDevicesList(std::string& out) override
    {
        return Answer(out, __func__);
    }
    int32_t QueryProtocolData(Text& in, std::string& out) override
    {
        return Answer(out, __func__, in);
    }
};

} // namespace

void SetScriptedService(const Json::Value& script)
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    g_script = script;
    const OHOS::sptr<ScriptedService> service(script.isNull() ? nullptr : new ScriptedService);
    OHOS::Host::SetProxySource([service] { return g_proxyCount++, service; });
}

void UnsetScriptedService()
{
    OHOS::Host::SetProxySource({});
}

Json::Value TakeRequests()
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    return std::exchange(g_requests, Json::arrayValue);
}

int TakeProxyCount()
{
    return g_proxyCount.exchange(0);
}

} // namespace ZelkTest
