// zelk_test.node: lets JavaScript tests control and observe the module. Every function but the module's probe takes and
// returns JSON text.
#include "control.h"

#include <sstream>

#include <json/reader.h>
#include <json/writer.h>

namespace ZelkTest {

napi_callback g_probe = nullptr;

namespace {

using Control = Json::Value (*)(const Json::Value& argument);

napi_value CallControl(napi_env env, napi_callback_info info)
{
    size_t count = 1;
    napi_value argument = nullptr;
    void* data = nullptr;
    napi_get_cb_info(env, info, &count, &argument, nullptr, &data);
    size_t length = 0;
    napi_get_value_string_utf8(env, argument, nullptr, 0, &length);
    std::string text(length, '\0');
    napi_get_value_string_utf8(env, argument, text.data(), length + 1, &length);
    Json::Value root;
    std::istringstream(text) >> root;
    const std::string result = Json::writeString(Json::StreamWriterBuilder(), reinterpret_cast<Control>(data)(root));
    napi_value value = nullptr;
    napi_create_string_utf8(env, result.data(), result.size(), &value);
    return value;
}

napi_property_descriptor Function(const char* name, Control control)
{
    return {name, nullptr, CallControl, nullptr, nullptr, nullptr, napi_default, reinterpret_cast<void*>(control)};
}

} // namespace

} // namespace ZelkTest

extern "C" ZELK_TEST_EXPORT napi_value napi_register_module_v1(napi_env env, napi_value exports)
{
    using namespace ZelkTest;
    const napi_property_descriptor functions[] = {
        Function("planFaults", PlanFaults),
        Function("trace", ReadTrace),
        Function("counts", ReadCounts),
        {"probe", nullptr, g_probe, nullptr, nullptr, nullptr, napi_default, nullptr},
    };
    napi_define_properties(env, exports, std::size(functions), functions);
    return exports;
}
