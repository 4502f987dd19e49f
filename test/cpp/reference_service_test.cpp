// The reference log service as its callers see it.
#include <array>
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "item_text.h"
#include "reference_service.h"

namespace OHOS::Host {
namespace {

using Texts = std::vector<std::string>;

constexpr const char* REFUSED = "refused";

TEST(ItemText, FramesAndTheirParts)
{
    const std::vector<std::pair<std::string, std::string>> cases = {
        {R"({"configKey":"a","value":1})", "a|1"},
        {R"({"configKey":"","value":})", "|"},
        {R"({"configKey":"a","value":{"b":"","value":2}})", R"(a|{"b":"","value":2})"},
        {R"({"configKey":"q"q","value":not json})", R"(q"q|not json)"},
        {R"({"configKey":"a","value":1} )", REFUSED},
        {R"( {"configKey":"a","value":1})", REFUSED},
        {R"({"configKey":"a","value":)", REFUSED},
        {R"({"configKey":"a","value": )", REFUSED},
        {R"({"configKey":","value":1})", REFUSED},
        {R"({"configKey":"a", "value":1})", REFUSED},
        {R"({"value":1,"configKey":"a"})", REFUSED},
        {"}", REFUSED},
        {"", REFUSED},
    };
    for (const auto& [text, parts] : cases) {
        const std::optional<Item> item = ParseItem(text);
        EXPECT_EQ(item ? std::string(item->key) + "|" + std::string(item->value) : REFUSED, parts) << text;
    }
}

TEST(ItemText, JsonStrings)
{
    EXPECT_EQ(JsonString("\"\\/\b\f\n\r\t\x01\x1f\x7f"), "\"\\\"\\\\/\\b\\f\\n\\r\\t\\u0001\\u001f\x7f\"");
    EXPECT_EQ(JsonString(std::string("a\0b", 3)), "\"a\\u0000b\"");
    EXPECT_EQ(JsonString("ä€😀"), "\"ä€😀\"");
}

// Modem log and packet capture are the same but for their names.
struct Log {
    std::string name;
    std::function<int32_t(bool&)> status;
    std::function<int32_t(Texts&, Texts&)> query;
    std::function<int32_t(Texts, bool&)> change;
    std::function<int32_t(bool, bool&)> turn;
    std::function<int32_t(bool, Texts, bool&)> turnWith;

    bool IsOn() const
    {
        bool on = false;
        EXPECT_EQ(status(on), 0) << name;
        return on;
    }
    Texts Values(Texts keys) const
    {
        Texts values = {"replaced"};
        EXPECT_EQ(query(keys, values), 0) << name;
        return values;
    }
};

std::array<Log, 2> Logs(HiviewDFX::IZelkLogService& service)
{
    return {Log{"modem log", [&](bool& on) { return service.GetModemLogStatus(on); },
                [&](Texts& keys, Texts& values) { return service.GetModemLogConfig(keys, values); },
                [&](Texts items, bool& done) { return service.ChangeModemLogConfig(items, done); },
                [&](bool on, bool& done) { return service.HandleModemLogSwitch(on, done); },
                [&](bool on, Texts items, bool& done) {
                    return service.HandleModemLogSwitch(on, items, done);
                }},
            Log{"tcpdump", [&](bool& on) { return service.GetTcpdumpStatus(on); },
                [&](Texts& keys, Texts& values) { return service.GetTcpdumpConfig(keys, values); },
                [&](Texts items, bool& done) { return service.ChangeTcpdumpConfig(items, done); },
                [&](bool on, bool& done) { return service.HandleTcpdumpSwitch(on, done); },
                [&](bool on, Texts items, bool& done) {
                    return service.HandleTcpdumpSwitch(on, items, done);
                }}};
}

std::string ItemOf(const std::string& key, const std::string& value)
{
    return R"({"configKey":")" + key + R"(","value":)" + value + "}";
}

TEST(ReferenceService, LogsKeepSwitchAndConfigurationApart)
{
    ReferenceService service;
    const std::array<Log, 2> logs = Logs(service);
    for (size_t index = 0; index < logs.size(); ++index) {
        const Log& log = logs[index];
        const Log& other = logs[1 - index];
        SCOPED_TRACE(log.name);
        bool done = false;
        EXPECT_FALSE(log.IsOn());
        EXPECT_EQ(log.Values({}), Texts());

        EXPECT_EQ(log.change({ItemOf("a", "1"), ItemOf("a", R"({"b":"\n"})"), ItemOf("q\"", "")}, done), 0);
        EXPECT_TRUE(done);
        EXPECT_FALSE(log.IsOn());
        EXPECT_EQ(log.Values({"q\"", "never", "a", "a"}),
                  (Texts{R"({"configKey":"q\"","value":""})", R"({"configKey":"never","value":"{}"})",
                         R"({"configKey":"a","value":"{\"b\":\"\\n\"}"})",
                         R"({"configKey":"a","value":"{\"b\":\"\\n\"}"})"}));
        EXPECT_EQ(other.Values({"a"}), index == 0 ? Texts{R"({"configKey":"a","value":"{}"})"} : logs[0].Values({"a"}));

        // One bad text, wherever it stands, and nothing of the call takes effect.
        done = true;
        EXPECT_EQ(log.turnWith(true, {ItemOf("a", "2"), "bad"}, done), ReferenceService::CODE_BAD_ITEM);
        EXPECT_FALSE(done);
        done = true;
        EXPECT_EQ(log.change({ItemOf("new", "2"), ""}, done), ReferenceService::CODE_BAD_ITEM);
        EXPECT_FALSE(done);
        EXPECT_FALSE(log.IsOn());
        EXPECT_EQ(log.Values({"new"}), Texts{R"({"configKey":"new","value":"{}"})"});

        EXPECT_EQ(log.turnWith(true, {ItemOf("a", "3")}, done), 0);
        EXPECT_TRUE(done && log.IsOn());
        EXPECT_EQ(log.Values({"a"}), Texts{R"({"configKey":"a","value":"3"})"});
        EXPECT_EQ(log.turn(false, done), 0);
        EXPECT_TRUE(done && !log.IsOn());
        EXPECT_EQ(log.change({}, done), 0);
        EXPECT_EQ(log.turnWith(true, {}, done), 0);
        EXPECT_TRUE(done && log.IsOn());
        EXPECT_EQ(other.IsOn(), index == 1);
    }
}

TEST(ReferenceService, FixedAndEchoedAnswers)
{
    ReferenceService service;
    std::string text;
    Texts masks;
    bool done = false;
    EXPECT_EQ(service.GetModemLogLogMasks(masks), 0);
    EXPECT_EQ(masks, (Texts{R"({"configKey":"ap","value":"0x0"})", R"({"configKey":"cp","value":"0x0"})"}));
    EXPECT_EQ(service.GetModemLogDirectPackConfig(text), 0);
    EXPECT_EQ(text, R"({"directPack":false})");
    EXPECT_EQ(service.GetRemoteDevicesList(text), 0);
    EXPECT_EQ(text, R"({"devices":[]})");
    EXPECT_EQ(service.FetchRemoteDevicesLogs("a\"b", text, INT64_MIN), 0);
    EXPECT_EQ(text, R"({"request":"a\"b","value":-9223372036854775808,"logs":[]})");
    EXPECT_EQ(service.QueryRemoteDevicesLogs("", text), 0);
    EXPECT_EQ(text, R"({"request":"","logs":[]})");
    EXPECT_EQ(service.QueryProtocolData("\n", text), 0);
    EXPECT_EQ(text, R"({"request":"\n","data":""})");
    EXPECT_EQ(service.HandleBluetoothCallPcmLogSwitch(true), 0);
    EXPECT_EQ(service.SendModemLogCommand(ItemOf("AT", "1"), done), 0);
    EXPECT_TRUE(done);
    EXPECT_EQ(service.SendModemLogCommand("AT", done), ReferenceService::CODE_BAD_ITEM);
    EXPECT_FALSE(done);
}

// Each call sets a key twice and asks for it twice; nobody may see the first value or a change in between.
TEST(ReferenceService, CallsOfSeveralThreadsTakeEffectAsAWhole)
{
    ReferenceService service;
    std::array<std::thread, 4> threads;
    for (size_t thread = 0; thread < threads.size(); ++thread) {
        threads[thread] = std::thread([&service, thread] {
            Texts keys = {"k", "k"};
            for (size_t round = 0; round < 500; ++round) {
                const std::string value = std::to_string(thread * 1000 + round);
                Texts items = {ItemOf("k", "other"), ItemOf("k", value)};
                Texts values;
                bool done = false;
                service.HandleModemLogSwitch(true, items, done);
                service.GetModemLogConfig(keys, values);
                ASSERT_EQ(values[0], values[1]);
                ASSERT_EQ(values[0].find("other"), std::string::npos);
                ASSERT_TRUE(done && service.GetModemLogStatus(done) == 0 && done);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace
} // namespace OHOS::Host
