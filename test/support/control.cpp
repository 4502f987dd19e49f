// zelk_test.node: lets JavaScript tests look behind the module. Every function takes and gives JSON text.
#include "control.h"

#include <mutex>
#include <sstream>
#include <utility>

#include <json/reader.h>
#include <json/writer.h>

#include "faults.h"
#include "hilog/capture.h"
#include "scripted_service.h"

namespace ZelkTest {

namespace {

std::mutex g_linesMutex;
Json::Value g_lines(Json::arrayValue);

using Control = Json::Value (*)(const Json::Value& argument);

// clang-format off
std::vector<napi_property_descriptor>& Probes() { static std::vector<napi_property_descriptor> probes; return probes; }

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
    return napi_create_string_utf8(env, result.data(), result.size(), &argument), argument;
}

// An object with the module's inside; the module must have been loaded.
napi_value ReadProbes(napi_env env, napi_callback_info)
{
    napi_value object = nullptr;
    napi_create_object(env, &object);
    return napi_define_properties(env, object, Probes().size(), Probes().data()), object;
}

napi_property_descriptor Function(const char* name, Control control)
    { return {name, nullptr, CallControl, nullptr, nullptr, nullptr, napi_default, reinterpret_cast<void*>(control)}; }

} // namespace

void AddProbes(const std::vector<napi_property_descriptor>& probes) { Probes() = probes; }

} // namespace ZelkTest

extern "C" ZELK_TEST_EXPORT napi_value napi_register_module_v1(napi_env env, napi_value exports)
{
    using namespace ZelkTest;
    const napi_property_descriptor functions[] = {
        Function("setService", [](auto& script) {
            script.isString() ? UnsetScriptedService() : SetScriptedService(script); // "embedded", or a script.
            return Json::Value(); }),
        Function("takeRequests", [](auto&) { return TakeRequests(); }),
        Function("takeProxyCount", [](auto&) { return Json::Value(TakeProxyCount()); }),
        Function("captureLines", [](auto&) {
            OHOS::Host::SetLogCapture([](const OHOS::Host::LogRecord& record) {
                Json::Value line;
                line[0] = record.level; line[1] = record.domain; line[2] = record.tag; line[3] = record.message;
                const std::lock_guard<std::mutex> lock(g_linesMutex);
                g_lines.append(std::move(line));
            });
            return Json::Value(); }),
        Function("takeLines", [](auto&) {
            const std::lock_guard<std::mutex> lock(g_linesMutex);
            return std::exchange(g_lines, Json::arrayValue); }),
        Function("planFaults", [](auto& plan) { return SetFaults(plan), Json::Value(); }),
        Function("trace", [](auto&) { return ReadTrace(); }),
        Function("counts", [](auto&) {
            const Counts& c = TheCounts();
            Json::Value all;
            all["records"] = c.records.load(); all["references"] = c.references.load(); all["works"] = c.works.load();
            all["deferreds"] = c.deferreds.load(); all["inFlight"] = c.inFlight.load();
            all["calls"] = c.calls.load(); all["faults"] = c.faults.load();
            return all; }),
        {"probes", nullptr, ReadProbes, nullptr, nullptr, nullptr, napi_default, nullptr},
    };
    return napi_define_properties(env, exports, std::size(functions), functions), exports;
}
// clang-format on
