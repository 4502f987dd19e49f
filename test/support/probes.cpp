// The module's inside, callable from JavaScript: its steps with null data, its value helpers, its executor. Linked into
// the test build of the module.
#include <array>

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

using Argv = std::array<napi_value, 4>; // Null past the real arguments.

// What a probe does with its arguments; null is undefined for JavaScript.
using Probe = napi_value (*)(napi_env env, const Argv& argv);

napi_value Run(napi_env env, napi_callback_info info)
{
    Argv argv = {};
    size_t count = argv.size();
    void* data = nullptr;
    napi_get_cb_info(env, info, &count, argv.data(), nullptr, &data);
    std::fill(argv.begin() + std::min(count, argv.size()), argv.end(), nullptr);
    return reinterpret_cast<Probe>(data)(env, argv);
}

// clang-format off
napi_property_descriptor Describe(const char* name, Probe probe)
    { return {name, nullptr, Run, nullptr, nullptr, nullptr, napi_enumerable, reinterpret_cast<void*>(probe)}; }

// Results as JavaScript values.
template <typename T> std::enable_if_t<std::is_convertible_v<T, double>, napi_value> Give(napi_env env, T value)
{
    napi_value result = nullptr;
    std::is_same_v<T, bool> ? napi_get_boolean(env, value, &result) : napi_create_double(env, value, &result);
    return result;
}

napi_value Give(napi_env env, const std::string& text) { return NapiUtil::CreateStringValue(env, text); }

// The key, then name:type of each parameter, then the text that the service would receive.
napi_value Give(napi_env env, const std::shared_ptr<ConfigInfo>& item)
{
    std::string text = item->key;
    for (const auto& param : item->params) { text += " " + param.name + ":" + std::to_string(param.type); }
    return Give(env, text + " " + item->GetJsonParams());
}

template <typename T> napi_value Give(napi_env env, const std::vector<T>& list)
{
    napi_value array = nullptr;
    napi_create_array(env, &array);
    for (size_t index = 0; index < list.size(); ++index) {
        napi_set_element(env, array, static_cast<uint32_t>(index), Give(env, T(list[index])));
    }
    return array;
}

// What `read` makes of the first argument.
template <auto read> napi_value Read(napi_env env, const Argv& argv) { return Give(env, read(env, argv[0])); }

// What a list of `kept` holds after `append` has seen the first argument.
template <typename T> std::vector<T> ListOf(void (*append)(napi_env, napi_value, std::vector<T>&));
template <auto append, auto... kept> napi_value Append(napi_env env, const Argv& argv)
{
    decltype(ListOf(append)) list = {kept...};
    return append(env, argv[0], list), Give(env, list);
}
constexpr char KEPT[] = "kept";

// ["text to resolve or reject with", code, "null" to convert to null]
napi_value Execute(napi_env env, const Argv& argv)
{
    const auto result = std::make_pair(NapiUtil::GetInt32(env, argv[1]), NapiUtil::GetString(env, argv[0]));
    const bool isNull = !NapiUtil::IsUndefined(env, argv[2]);
    return (new NapiExecutor<std::string>("Probe", env, [=] { return result; },
        [=](napi_env jsEnv, std::string& text) { return isNull ? nullptr : Give(jsEnv, text); }))->Execute();
}

// A bare record, whose complete step answers undefined.
napi_value HandleBare(napi_env env, const Argv&)
{
    return NapiUtil::HandleAsyncWork(env, new BaseContext, "Bare", [](napi_env, void*) {},
        [](napi_env jsEnv, napi_status, void* data) {
            NapiUtil::Handle2ValueCallback(jsEnv, static_cast<BaseContext*>(data), NapiUtil::CreateUndefined(jsEnv));
        });
}

napi_value GetProperty(napi_env env, const Argv& argv)
{
    napi_value value = NapiUtil::GetProperty(env, argv[0], NapiUtil::GetString(env, argv[1]));
    return value == nullptr ? Give(env, "null pointer") : value;
}

// The text onto the object; the exception's text if jsoncpp throws.
napi_value ConvertJson(napi_env env, const Argv& argv)
{
    try {
        return ConvertJsonToObject(env, NapiUtil::GetString(env, argv[0]), argv[1]), argv[1];
    } catch (const std::exception& exception) {
        return Give(env, exception.what());
    }
}

// The two steps of a function.
#define STEPS(name)                                                                                                    \
    Describe("Native" #name, [](auto env, auto&) { return Native##name(env, nullptr), napi_value(); }),                \
    Describe(#name "Callback", [](auto env, auto&) { return name##Callback(env, napi_ok, nullptr), napi_value(); })

__attribute__((constructor)) void RegisterProbes()
{
    ZelkTest::AddProbes({
        STEPS(GetModemLogStatus), STEPS(HandleModemLogSwitch), STEPS(GetModemLogConfig),
        STEPS(GetModemLogDirectPackConfig), STEPS(GetModemLogLogMasks), STEPS(ChangeModemLogConfig),
        STEPS(SendModemLogCommand), STEPS(GetTcpdumpStatus), STEPS(HandleTcpdumpSwitch), STEPS(GetTcpdumpConfig),
        STEPS(ChangeTcpdumpConfig), STEPS(HandleBluetoothCallPcmLogSwitch),
        Describe("OnGlobalExecuteCallback", [](auto env, auto&) {
            return OnGlobalExecuteCallback(env, nullptr), napi_value(); }),
        Describe("OnGlobalCompleteCallback", [](auto env, auto&) {
            return OnGlobalCompleteCallback(env, napi_ok, nullptr), napi_value(); }),
        Describe("handleNothing", [](auto env, auto&) {
            return NapiUtil::HandleAsyncWork(env, nullptr, "Nothing", nullptr, nullptr); }),
        Describe("handleBare", HandleBare), Describe("execute", Execute),
        Describe("answerNothing", [](auto env, auto&) {
            return NapiUtil::Handle2ValueCallback(env, nullptr, nullptr), napi_value(); }),
        Describe("answerNobody", [](auto env, auto&) { // The record has neither callback nor promise.
            return NapiUtil::Handle2ValueCallback(env, new BaseContext, nullptr), napi_value(); }),
        Describe("throwError", [](auto env, auto& argv) {
            NapiUtil::ThrowError(env, NapiUtil::GetInt32(env, argv[0]), "message");
            return NapiUtil::ThrowError(env, 1, "while one is pending"), napi_value(); }),
        Describe("matchString", [](auto env, auto& argv) {
            return Give(env, NapiUtil::MatchValueType(env, argv[0], napi_string)); }),
        Describe("isUndefined", Read<NapiUtil::IsUndefined>), Describe("isArray", Read<NapiUtil::IsArray>),
        Describe("getType", Read<NapiUtil::GetType>), Describe("getArrayType", Read<NapiUtil::GetArrayType>),
        Describe("getBool", Read<NapiUtil::GetBool>), Describe("getInt32", Read<NapiUtil::GetInt32>),
        Describe("getString", Read<NapiUtil::GetString>), Describe("getProperty", GetProperty),
        Describe("getInt64", [](auto env, auto& argv) {
            return Give(env, std::to_string(NapiUtil::GetInt64(env, argv[0]))); }),
        Describe("getElement", [](auto env, auto& argv) { return NapiUtil::GetElement(env, argv[0], 0); }),
        Describe("setProperty", [](auto env, auto& argv) {
            return NapiUtil::SetPropertyStringUtf8(env, argv[0], "name", std::string("a\0b", 3)), argv[0]; }),
        Describe("getPropertyNames", Append<NapiUtil::GetPropertyNames, KEPT>),
        Describe("getBooleans", Append<NapiUtil::GetBooleans, true>),
        Describe("getInt32s", Append<NapiUtil::GetInt32s, 7>), Describe("getStrings", [](auto env, auto& argv) {
            std::vector<std::string> list = {KEPT};
            return NapiUtil::GetStrings(env, argv[0], list, MAX_STRING_LENGTH), Give(env, list); }),
        Describe("fillStringVector", Append<FillStringVector>), Describe("convertJsonToObject", ConvertJson),
        Describe("fillConfigInfoVector", Append<FillConfigInfoVector>),
    });
}
// clang-format on

} // namespace
