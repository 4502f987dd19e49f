// The reference log service as its callers see it, and the client library's base class.
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "in_threads.h"
#include "service/reference/item_text.h"
#include "service/reference/reference_service.h"
#include "zelk_service_api/client.h"

namespace OHOS::Host {

using HiviewDFX::Client;
using Texts = std::vector<std::string>;

TEST(ItemText, FramesAndTheirParts)
{
    const auto parts = [](const std::string& text) {
        const std::optional<Item> item = ParseItem(text);
        return item ? std::string(item->key) + "|" + std::string(item->value) : "refused";
    };
    EXPECT_EQ(parts(R"({"configKey":"","value":})"), "|");
    EXPECT_EQ(parts(R"({"configKey":"a","value":{"b":"","value":2}})"), R"(a|{"b":"","value":2})");
    EXPECT_EQ(parts(R"({"configKey":"q"q","value":not json})"), R"(q"q|not json)");
    EXPECT_EQ(parts(R"({"configKey":","value":1})"), "refused");
    EXPECT_EQ(parts(R"({"configKey":"a","value":)"), "refused");
    EXPECT_EQ(parts(R"({"configKey":"a","value":1} )"), "refused");
    EXPECT_EQ(parts(R"( {"configKey":"a","value":1})"), "refused");
    EXPECT_EQ(parts(""), "refused");
    EXPECT_EQ(JsonString("\"\\/\b\f\n\r\t\x01\x1f\x7f ä€😀"), "\"\\\"\\\\/\\b\\f\\n\\r\\t\\u0001\\u001f\x7f ä€😀\"");
    EXPECT_EQ(JsonString({"a\0b", 3}), "\"a\\u0000b\"");
}

std::string ItemOf(const std::string& key, const std::string& value)
{
    return R"({"configKey":")" + key + R"(","value":)" + value + "}";
}

// No call may see a change in between.
TEST(ReferenceService, CallsOfSeveralThreadsTakeEffectAsAWhole)
{
    ReferenceService service;
    ZelkTest::InThreads([&service](size_t thread) {
        for (size_t round = 0; round < 500; ++round) {
            Texts keys = {"k", "k"};
            Texts items = {ItemOf("k", std::string(thread + round, 'x'))};
            Texts values;
            bool done = false;
            service.HandleModemLogSwitch(true, items, done);
            service.GetModemLogConfig(keys, values);
            ASSERT_TRUE(done);
            ASSERT_EQ(values[0], values[1]);
        }
    });
}

// An item whose text has this many bytes.
std::string ItemOfSize(const std::string& key, size_t size)
{
    return ItemOf(key, std::string(size - ItemOf(key, "").size(), 'x'));
}

class Limits : public testing::Test {
protected:
    // "code result".
    std::string Change(Texts items)
    {
        bool result = false;
        const int32_t code = service.HandleTcpdumpSwitch(true, items, result);
        return std::to_string(code) + (result ? " true" : " false");
    }

    // "code", how many texts were answered, and the size of one.
    std::string Query(const Texts& keys)
    {
        Texts values = {"left over"};
        const int32_t code = service.GetTcpdumpConfig(keys, values);
        const size_t size = values.empty() ? 0 : values[0].size();
        return std::to_string(code) + " " + std::to_string(values.size()) + " " + std::to_string(size);
    }

    std::string Echo(const std::string& request)
    {
        std::string response = "left over";
        const int32_t code = service.QueryRemoteDevicesLogs(request, response);
        return std::to_string(code) + " " + std::to_string(response.size());
    }

    static constexpr size_t MB = 1'000'000;
    ReferenceService service;
};

TEST_F(Limits, OfAnItem)
{
    EXPECT_EQ(Change({ItemOfSize("k", MB)}), "0 true");
    EXPECT_EQ(Change({ItemOf("other", "1"), ItemOfSize("k", MB + 1)}), "2 false");
    EXPECT_EQ(Query({"other"}), "0 1 34"); // Never set.
    bool done = false;
    EXPECT_TRUE(service.SendModemLogCommand(ItemOfSize("k", MB), done) == 0 && done);
    EXPECT_TRUE(service.SendModemLogCommand(ItemOfSize("k", MB + 1), done) == 2 && !done);
}

TEST_F(Limits, OfARequestAndAnAnswer)
{
    const std::string answerFrame = R"({"configKey":"k","value":""})";
    EXPECT_EQ(Change(Texts(16, ItemOfSize("k", MB))), "0 true");
    EXPECT_EQ(Change(Texts(17, ItemOfSize("k", MB - MB / 17))), "2 false");
    EXPECT_EQ(Change({ItemOf("k", std::string(MB - answerFrame.size(), 'x'))}), "0 true");
    EXPECT_EQ(Query(Texts(16, "k")), "0 16 1000000");
    EXPECT_EQ(Query(Texts(17, "k")), "2 0 0");
    // A quote takes two bytes.
    EXPECT_EQ(Change({ItemOf("k", std::string(MB - answerFrame.size() - 2, 'x') + '"')}), "0 true");
    EXPECT_EQ(Query(Texts(16, "k")), "0 16 1000000");
    EXPECT_EQ(Change({ItemOf("k", std::string(MB - answerFrame.size() - 1, 'x') + '"')}), "0 true");
    EXPECT_EQ(Query(Texts(16, "k")), "2 0 0");

    const std::string echoFrame = R"({"request":"","logs":[]})";
    EXPECT_EQ(Echo(std::string(16 * MB - echoFrame.size(), 'x')), "0 16000000");
    EXPECT_EQ(Echo(std::string(16 * MB - echoFrame.size(), '\n')), "2 0");
    EXPECT_EQ(Echo(std::string(16 * MB + 1, 'x')), "2 0");
}

TEST_F(Limits, OfALogsKeys)
{
    Texts items;
    for (int i = 0; i < 9999; ++i) {
        items.push_back(ItemOf(std::to_string(i), "1"));
    }
    EXPECT_EQ(Change(items), "0 true");
    EXPECT_EQ(Change({ItemOf("a", ""), ItemOf("b", "")}), "2 false");
    EXPECT_EQ(Change({ItemOf("a", ""), ItemOf("a", ""), ItemOf("0", "")}), "0 true");
    EXPECT_EQ(Change({ItemOf("b", "")}), "2 false");
}

TEST_F(Limits, OfALogsKeysAndValues)
{
    const size_t frame = ItemOf("", "").size();
    for (int full = 0; full < 64; ++full) {
        EXPECT_EQ(Change({ItemOfSize("key" + std::to_string(full), MB)}), "0 true");
    }
    EXPECT_EQ(Change({ItemOfSize("last", 65 * frame + 1)}), "2 false");
    EXPECT_EQ(Change({ItemOfSize("last", 65 * frame)}), "0 true");
    EXPECT_EQ(Change({ItemOf("a", "")}), "2 false");
    EXPECT_EQ(Change({ItemOf("last", ""), ItemOf("a", "")}), "0 true"); // Replaced values no longer count.
}

TEST(Client, CallsTheCallbacksWhenTheServiceDies)
{
    Client client;
    std::string called;
    const std::pair<const char*, const char*> callbacks[] = {{"b", "2"}, {"a", "replaced"}, {"a", "1"}};
    for (const auto& [name, text] : callbacks) {
        std::function<void()> callback = [&called, said = text] {
            called += said;
        };
        client.RegisterRemotedDied(name, callback);
    }
    std::function<void()> nothing;
    client.RegisterRemotedDied("c", nothing);
    client.OnRemoteDied({});
    EXPECT_EQ(called, "12");
}

} // namespace OHOS::Host
