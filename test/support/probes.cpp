// The module's inside, callable from JavaScript: its steps with null data, its value helpers, its executor. Linked into
// the test build of the module.
#include <array>
#include <string>
#include <vector>

#include "config/json_to_object.h"
#include "config/napi_zelk_config_info_build.h"
#include "control.h"
#include "napi/bluetooth_call_pcm_log_switch.h"
#include "napi/modem_log_command.h"
#include "napi/modem_log_config.h"
#include "napi/modem_log_config_change.h"
#include "napi/modem_log_direct_pack_config.h"
#include "napi/modem_log_log_masks.h"
#include "napi/modem_log_status.h"
#include "napi/modem_log_switch.h"
#include "napi/tcpdump_config.h"
#include "napi/tcpdump_config_change.h"
#include "napi/tcpdump_status.h"
#include "napi/tcpdump_switch.h"
#include "napi/util/match_parameters.h"
#include "napi/util/napi_executor.h"
#include "napi/util/napi_util.h"

namespace {

using namespace OHOS::HiviewDFX;

constexpr size_t MAX_ARGUMENTS = 4;
using Argv = std::array<napi_value, MAX_ARGUMENTS>; // Null past the real arguments.

// What a probe does with its arguments; null is undefined for JavaScript.
using Probe = napi_value (*)(napi_env env, const Argv& argv);

napi_value Run(napi_env env, napi_callback_info info)
{
    Argv argv = {};
    size_t count = MAX_ARGUMENTS;
    void* data = nullptr;
    napi_get_cb_info(env, info, &count, argv.data(), nullptr, &data);
    std::fill(argv.begin() + std::min(count, MAX_ARGUMENTS), argv.end(), nullptr);
    return reinterpret_cast<Probe>(data)(env, argv);
}

napi_property_descriptor Describe(const char* name, Probe probe)
{
    return {name, nullptr, Run, nullptr, nullptr, nullptr, napi_enumerable, reinterpret_cast<void*>(probe)};
}

napi_value ExecuteNull(napi_env env, napi_callback_info info)
{
    void* step = nullptr;
    napi_get_cb_info(env, info, nullptr, nullptr, nullptr, &step);
    reinterpret_cast<napi_async_execute_callback>(step)(env, nullptr);
    return nullptr;
}

napi_value CompleteNull(napi_env env, napi_callback_info info)
{
    void* step = nullptr;
    napi_get_cb_info(env, info, nullptr, nullptr, nullptr, &step);
    reinterpret_cast<napi_async_complete_callback>(step)(env, napi_ok, nullptr);
    return nullptr;
}

napi_property_descriptor Describe(const char* name, napi_async_execute_callback step)
{
    return {name, nullptr, ExecuteNull, nullptr, nullptr, nullptr, napi_enumerable, reinterpret_cast<void*>(step)};
}

napi_property_descriptor Describe(const char* name, napi_async_complete_callback step)
{
    return {name, nullptr, CompleteNull, nullptr, nullptr, nullptr, napi_enumerable, reinterpret_cast<void*>(step)};
}

napi_value Boolean(napi_env env, bool value)
{
    napi_value result = nullptr;
    napi_get_boolean(env, value, &result);
    return result;
}

napi_value Number(napi_env env, double value)
{
    napi_value result = nullptr;
    napi_create_double(env, value, &result);
    return result;
}

napi_value Text(napi_env env, const std::string& text)
{
    return NapiUtil::CreateStringValue(env, text);
}

template <typename List, typename Make>
napi_value Array(napi_env env, const List& list, Make make)
{
    napi_value array = nullptr;
    napi_create_array(env, &array);
    uint32_t index = 0;
    for (const auto& element : list) {
        napi_set_element(env, array, index++, make(env, element));
    }
    return array;
}

// One array per item: the key, then [name, type] of each parameter, then the text that the service would receive.
napi_value Item(napi_env env, const std::shared_ptr<ConfigInfo>& item)
{
    std::string text = item->key;
    for (const ConfigInfoParam& param : item->params) {
        text += " " + param.name + ":" + std::to_string(param.type);
    }
    return Text(env, text + " " + item->GetJsonParams());
}

// ["text to resolve or reject with", code, "null" to convert to null]
napi_value Execute(napi_env env, const Argv& argv)
{
    const std::string text = NapiUtil::GetString(env, argv[0]);
    const int code = NapiUtil::GetInt32(env, argv[1]);
    NapiExecutor<std::string>::Converter converter = NapiUtil::CreateStringValue;
    if (!NapiUtil::IsUndefined(env, argv[2])) {
        converter = [](napi_env, std::string&) {
            return nullptr;
        };
    }
    auto* executor = new NapiExecutor<std::string>(
        "Probe", env, [=] { return std::pair<int, std::string>(code, text); }, converter);
    return executor->Execute();
}

__attribute__((constructor)) void RegisterProbes()
{
    ZelkTest::AddProbes({
        Describe("NativeGetModemLogStatus", NativeGetModemLogStatus),
        Describe("GetModemLogStatusCallback", GetModemLogStatusCallback),
        Describe("NativeHandleModemLogSwitch", NativeHandleModemLogSwitch),
        Describe("HandleModemLogSwitchCallback", HandleModemLogSwitchCallback),
        Describe("NativeGetModemLogConfig", NativeGetModemLogConfig),
        Describe("GetModemLogConfigCallback", GetModemLogConfigCallback),
        Describe("NativeGetModemLogDirectPackConfig", NativeGetModemLogDirectPackConfig),
        Describe("GetModemLogDirectPackConfigCallback", GetModemLogDirectPackConfigCallback),
        Describe("NativeGetModemLogLogMasks", NativeGetModemLogLogMasks),
        Describe("GetModemLogLogMasksCallback", GetModemLogLogMasksCallback),
        Describe("NativeChangeModemLogConfig", NativeChangeModemLogConfig),
        Describe("ChangeModemLogConfigCallback", ChangeModemLogConfigCallback),
        Describe("NativeSendModemLogCommand", NativeSendModemLogCommand),
        Describe("SendModemLogCommandCallback", SendModemLogCommandCallback),
        Describe("NativeGetTcpdumpStatus", NativeGetTcpdumpStatus),
        Describe("GetTcpdumpStatusCallback", GetTcpdumpStatusCallback),
        Describe("NativeHandleTcpdumpSwitch", NativeHandleTcpdumpSwitch),
        Describe("HandleTcpdumpSwitchCallback", HandleTcpdumpSwitchCallback),
        Describe("NativeGetTcpdumpConfig", NativeGetTcpdumpConfig),
        Describe("GetTcpdumpConfigCallback", GetTcpdumpConfigCallback),
        Describe("NativeChangeTcpdumpConfig", NativeChangeTcpdumpConfig),
        Describe("ChangeTcpdumpConfigCallback", ChangeTcpdumpConfigCallback),
        Describe("NativeHandleBluetoothCallPcmLogSwitch", NativeHandleBluetoothCallPcmLogSwitch),
        Describe("HandleBluetoothCallPcmLogSwitchCallback", HandleBluetoothCallPcmLogSwitchCallback),
        Describe("OnGlobalExecuteCallback", OnGlobalExecuteCallback),
        Describe("OnGlobalCompleteCallback", OnGlobalCompleteCallback),

        Describe(
            "handleNothing",
            +[](napi_env env, const Argv&) -> napi_value {
                return NapiUtil::HandleAsyncWork(env, nullptr, "Nothing", nullptr, nullptr);
            }),
        // A bare record, whose complete step answers undefined.
        Describe(
            "handleBare",
            +[](napi_env env, const Argv&) {
                const auto complete = [](napi_env completeEnv, napi_status, void* data) {
                    NapiUtil::Handle2ValueCallback(completeEnv, static_cast<BaseContext*>(data),
                                                   NapiUtil::CreateUndefined(completeEnv));
                };
                return NapiUtil::HandleAsyncWork(
                    env, new BaseContext, "Bare", [](napi_env, void*) {}, complete);
            }),
        Describe(
            "answerNothing",
            +[](napi_env env, const Argv&) -> napi_value {
                NapiUtil::Handle2ValueCallback(env, nullptr, nullptr);
                return nullptr;
            }),
        // A record with neither callback nor promise.
        Describe(
            "answerNobody",
            +[](napi_env env, const Argv&) -> napi_value {
                NapiUtil::Handle2ValueCallback(env, new BaseContext, nullptr);
                return nullptr;
            }),
        Describe(
            "throwError",
            +[](napi_env env, const Argv& argv) -> napi_value {
                NapiUtil::ThrowError(env, NapiUtil::GetInt32(env, argv[0]), "message");
                NapiUtil::ThrowError(env, 1, "while one is pending");
                return nullptr;
            }),
        Describe("execute", Execute),

        Describe(
            "matchString",
            +[](napi_env env, const Argv& argv) {
                return Boolean(env, NapiUtil::MatchValueType(env, argv[0], napi_string));
            }),
        Describe(
            "matchObjectThenFunction",
            +[](napi_env env, const Argv& argv) {
                return Boolean(env, MatchParameters(env, argv.data(), {napi_object, napi_function}));
            }),
        Describe(
            "getType", +[](napi_env env, const Argv& argv) { return Number(env, NapiUtil::GetType(env, argv[0])); }),
        Describe(
            "isUndefined",
            +[](napi_env env, const Argv& argv) { return Boolean(env, NapiUtil::IsUndefined(env, argv[0])); }),
        Describe(
            "isArray", +[](napi_env env, const Argv& argv) { return Boolean(env, NapiUtil::IsArray(env, argv[0])); }),
        Describe(
            "getBool", +[](napi_env env, const Argv& argv) { return Boolean(env, NapiUtil::GetBool(env, argv[0])); }),
        Describe(
            "getInt32", +[](napi_env env, const Argv& argv) { return Number(env, NapiUtil::GetInt32(env, argv[0])); }),
        Describe(
            "getInt64", +[](napi_env env,
                            const Argv& argv) { return Text(env, std::to_string(NapiUtil::GetInt64(env, argv[0]))); }),
        Describe(
            "getString", +[](napi_env env, const Argv& argv) { return Text(env, NapiUtil::GetString(env, argv[0])); }),
        Describe(
            "getProperty",
            +[](napi_env env, const Argv& argv) -> napi_value {
                napi_value value = NapiUtil::GetProperty(env, argv[0], NapiUtil::GetString(env, argv[1]));
                return value == nullptr ? Text(env, "null pointer") : value;
            }),
        Describe(
            "getPropertyNames",
            +[](napi_env env, const Argv& argv) {
                std::vector<std::string> names = {"kept"};
                NapiUtil::GetPropertyNames(env, argv[0], names);
                return Array(env, names, Text);
            }),
        Describe(
            "setProperty",
            +[](napi_env env, const Argv& argv) -> napi_value {
                NapiUtil::SetPropertyStringUtf8(env, argv[0], "name", std::string("a\0b", 3));
                return argv[0];
            }),
        Describe(
            "getElement",
            +[](napi_env env, const Argv& argv) -> napi_value { return NapiUtil::GetElement(env, argv[0], 0); }),
        Describe(
            "getArrayType",
            +[](napi_env env, const Argv& argv) { return Number(env, NapiUtil::GetArrayType(env, argv[0])); }),
        Describe(
            "getBooleans",
            +[](napi_env env, const Argv& argv) {
                std::vector<bool> values = {true};
                NapiUtil::GetBooleans(env, argv[0], values);
                return Array(env, values, Boolean);
            }),
        Describe(
            "getInt32s",
            +[](napi_env env, const Argv& argv) {
                std::vector<int> values = {7};
                NapiUtil::GetInt32s(env, argv[0], values);
                return Array(env, values, Number);
            }),
        Describe(
            "getStrings",
            +[](napi_env env, const Argv& argv) {
                std::vector<std::string> values = {"kept"};
                NapiUtil::GetStrings(env, argv[0], values, MAX_STRING_LENGTH);
                return Array(env, values, Text);
            }),
        Describe(
            "fillStringVector",
            +[](napi_env env, const Argv& argv) {
                std::vector<std::string> values;
                FillStringVector(env, argv[0], values);
                return Array(env, values, Text);
            }),
        Describe(
            "fillConfigInfoVector",
            +[](napi_env env, const Argv& argv) {
                std::vector<std::shared_ptr<ConfigInfo>> items;
                FillConfigInfoVector(env, argv[0], items);
                return Array(env, items, Item);
            }),
        // The text onto the object; the exception's text if jsoncpp throws.
        Describe(
            "convertJsonToObject",
            +[](napi_env env, const Argv& argv) -> napi_value {
                try {
                    ConvertJsonToObject(env, NapiUtil::GetString(env, argv[0]), argv[1]);
                } catch (const std::exception& exception) {
                    return Text(env, exception.what());
                }
                return argv[1];
            }),
    });
}

} // namespace
