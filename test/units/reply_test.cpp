// The module outside Node.js: replies for which jsoncpp throws, as the executable of Node.js contains its own C++
// runtime, which finds handlers that a device's would not; and long replies.
#include <algorithm>
#include <ctime>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <node_api.h>
#include <string>

// Whether the service's text becomes an item. The library under test sets it when it is loaded.
__attribute__((visibility("default"))) bool (*g_conversion)(const std::string& text) = nullptr;

// A runtime that creates nothing, with only the functions that these need.
#define SUCCEEDS(name, ...)                                                                                            \
    napi_status name(__VA_ARGS__)                                                                                      \
    {                                                                                                                  \
        return napi_ok;                                                                                                \
    }
SUCCEEDS(napi_create_array, napi_env, napi_value*)
SUCCEEDS(napi_create_object, napi_env, napi_value*)
SUCCEEDS(napi_create_int32, napi_env, int32_t, napi_value*)
SUCCEEDS(napi_create_string_utf8, napi_env, const char*, size_t, napi_value*)
SUCCEEDS(napi_set_named_property, napi_env, napi_value, const char*, napi_value)
SUCCEEDS(napi_set_property, napi_env, napi_value, napi_value, napi_value)
SUCCEEDS(napi_set_element, napi_env, napi_value, uint32_t, napi_value)
SUCCEEDS(napi_open_handle_scope, napi_env, napi_handle_scope*)
SUCCEEDS(napi_close_handle_scope, napi_env, napi_handle_scope)
void napi_module_register(napi_module*) {}

void* const g_module = dlopen(REPLY_MODULE, RTLD_LAZY);

std::string Repeat(const std::string& part, int times)
{
    std::string text;
    while (times-- > 0) {
        text += part;
    }
    return text;
}

// The processor's time, of the fastest of a few conversions.
clock_t TimeOf(const std::string& text)
{
    const auto once = [&text] {
        const clock_t start = std::clock();
        EXPECT_TRUE(g_conversion(text));
        return std::clock() - start;
    };
    return std::min({once(), once(), once()});
}

void ExpectTimeByLength(const std::string& start, const std::string& part, const std::string& end)
{
    // Long enough that the memory of either text comes fresh from the system, which takes time as well.
    const int few = 150'000 / static_cast<int>(part.size());
    const clock_t fewTime = TimeOf(start + Repeat(part, few) + end);
    EXPECT_LT(TimeOf(start + Repeat(part, 10 * few) + end), 40 * fewTime) << part;
}

TEST(Reply, TakesTimeByItsLength)
{
    ASSERT_NE(g_module, nullptr) << dlerror();
    ExpectTimeByLength(R"({"value": "{}")", "/**/", "}");
    ExpectTimeByLength(R"({"list": [0)", "," + std::string(900, '[') + std::string(900, ']'), "]}");
    ExpectTimeByLength(R"({"list": [0)", ",-1.5e7,4294967296", "]}");
    ExpectTimeByLength(R"({"value": 0.)", "1", "}");
    ExpectTimeByLength(R"({"value": "{}", "text": ")", R"(\n\u00e9\ud83d\ude00)", R"("})");
    ExpectTimeByLength(R"({"value": "{}")", " \t\r\n", "}");
    ExpectTimeByLength("{", R"("value": "{}",)", R"("a": 1})");
}

TEST(Reply, IsAbandonedWhenJsoncppThrows)
{
    ASSERT_NE(g_module, nullptr) << dlerror();
    EXPECT_TRUE(g_conversion(R"({"configKey": "k", "value": "{\"level\": 3}"})"));
    EXPECT_FALSE(g_conversion(R"({"configKey": "k", "value": "{\"level\": 4294967296}"})"));
    EXPECT_FALSE(g_conversion(std::string(2000, '[') + std::string(2000, ']')));
}
