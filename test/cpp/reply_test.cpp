// Replies for which jsoncpp throws, outside Node.js: its executable contains its own C++ runtime, which finds handlers
// that a device's would not.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <node_api.h>
#include <string>

// Whether the service's text becomes an item. The library under test sets it when it is loaded.
__attribute__((visibility("default"))) bool (*g_conversion)(const std::string& text) = nullptr;

// A runtime that creates nothing, with only the functions that a reply needs.
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

TEST(Reply, IsAbandonedWhenJsoncppThrows)
{
    ASSERT_NE(dlopen(REPLY_MODULE, RTLD_LAZY), nullptr) << dlerror();
    ASSERT_NE(g_conversion, nullptr);
    EXPECT_TRUE(g_conversion(R"({"configKey": "k", "value": "{\"level\": 3}"})"));
    EXPECT_FALSE(g_conversion(R"({"configKey": "k", "value": "{\"level\": 4294967296}"})"));
    EXPECT_FALSE(g_conversion(std::string(2000, '[') + std::string(2000, ']')));
}
