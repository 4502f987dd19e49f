// zelk_test.node: lets JavaScript tests look behind the module. Every function takes and gives JSON text.
#include "control.h"

#include <memory>
#include <mutex>
#include <sstream>
#include <string>

#include <json/reader.h>
#include <json/writer.h>

#include "faults.h"
#include "hilog/capture.h"
#include "scripted_service.h"

namespace ZelkTest {

namespace {

std::mutex g_linesMutex;
Json::Value g_lines(Json::arrayValue);

std::vector<napi_property_descriptor>& Probes()
{
    static std::vector<napi_property_descriptor> probes;
    return probes;
}

using Control = Json::Value (*)(const Json::Value& argument);

Json::Value SetService(const Json::Value& script)
{
    if (script.isString()) {
        UnsetScriptedService(); // "embedded"
    } else {
        SetScriptedService(script);
    }
    return {};
}

Json::Value CaptureLines(const Json::Value& isOn)
{
    OHOS::Host::LogCapture capture;
    if (isOn.asBool()) {
        capture = [](const OHOS::Host::LogRecord& record) {
            Json::Value line(Json::arrayValue);
            line.append(record.level);
            line.append(record.domain);
            line.append(record.tag);
            line.append(record.message);
            const std::lock_guard<std::mutex> lock(g_linesMutex);
            g_lines.append(std::move(line));
        };
    }
    OHOS::Host::SetLogCapture(std::move(capture));
    return {};
}

Json::Value TakeLines(const Json::Value&)
{
    const std::lock_guard<std::mutex> lock(g_linesMutex);
    Json::Value lines(Json::arrayValue);
    lines.swap(g_lines);
    return lines;
}

Json::Value PlanFaults(const Json::Value& plan)
{
    SetFaults(plan);
    return {};
}

Json::Value ReadCounts(const Json::Value&)
{
    const Counts& counts = TheCounts();
    Json::Value result;
    result["records"] = counts.records.load();
    result["references"] = counts.references.load();
    result["works"] = counts.works.load();
    result["deferreds"] = counts.deferreds.load();
    result["inFlight"] = counts.inFlight.load();
    result["calls"] = counts.calls.load();
    result["faults"] = counts.faults.load();
    return result;
}

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
    std::istringstream stream(text);
    Json::parseFromStream(Json::CharReaderBuilder(), stream, &root, nullptr);
    Json::StreamWriterBuilder writer;
    writer["indentation"] = "";
    const std::string result = Json::writeString(writer, reinterpret_cast<Control>(data)(root));
    napi_value value = nullptr;
    napi_create_string_utf8(env, result.data(), result.size(), &value);
    return value;
}

// An object with the module's inside; the module must have been loaded.
napi_value ReadProbes(napi_env env, napi_callback_info)
{
    napi_value object = nullptr;
    napi_create_object(env, &object);
    napi_define_properties(env, object, Probes().size(), Probes().data());
    return object;
}

napi_property_descriptor Function(const char* name, Control control)
{
    return {name, nullptr, CallControl, nullptr, nullptr, nullptr, napi_default, reinterpret_cast<void*>(control)};
}

} // namespace

void AddProbes(const std::vector<napi_property_descriptor>& probes)
{
    Probes() = probes;
}

} // namespace ZelkTest

extern "C" ZELK_TEST_EXPORT napi_value napi_register_module_v1(napi_env env, napi_value exports)
{
    using namespace ZelkTest;
    const napi_property_descriptor functions[] = {
        Function("setService", SetService),
        Function("takeRequests", [](const Json::Value&) { return TakeRequests(); }),
        Function("takeProxyCount", [](const Json::Value&) { return Json::Value(TakeProxyCount()); }),
        Function("captureLines", CaptureLines),
        Function("takeLines", TakeLines),
        Function("planFaults", PlanFaults),
        Function("trace", [](const Json::Value&) { return ReadTrace(); }),
        Function("counts", ReadCounts),
        {"probes", nullptr, ReadProbes, nullptr, nullptr, nullptr, napi_default, nullptr},
    };
    napi_define_properties(env, exports, sizeof(functions) / sizeof(functions[0]), functions);
    return exports;
}
