// The module's internals, callable from JavaScript: its steps with null data, its value helpers. Linked
// into the test build of the module.
#include <algorithm>
#include <array>

#include "config/napi_zelk_config_info_build.h"
#include "control.h"
#include "napi/functions.h"
#include "napi/util/napi_context.h"
#include "napi/util/napi_util.h"

namespace {

using namespace OHOS::HiviewDFX;

using Argv = std::array<napi_value, 4>; // Null past the real arguments.

// What a probe does with its arguments; null is undefined in JavaScript.
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

// Results as JavaScript values.
napi_value Give(napi_env env, bool value)
{
    napi_value result = nullptr;
    napi_get_boolean(env, value, &result);
    return result;
}

napi_value Give(napi_env env, int32_t value)
{
    napi_value result = nullptr;
    napi_create_int32(env, value, &result);
    return result;
}

napi_value Give(napi_env env, const std::string& text)
{
    return NapiUtil::CreateStringValue(env, text);
}

template <typename T>
napi_value Give(napi_env env, const std::vector<T>& list)
{
    napi_value array = nullptr;
    napi_create_array(env, &array);
    for (size_t index = 0; index < list.size(); ++index) {
        napi_set_element(env, array, static_cast<uint32_t>(index), Give(env, T(list[index])));
    }
    return array;
}

// The list after `append` was called with the first argument.
template <typename T, void (*append)(napi_env, napi_value, std::vector<T>&)>
napi_value Append(napi_env env, const Argv& argv)
{
    std::vector<T> list = {T()};
    append(env, argv[0], list);
    return Give(env, list);
}

// The steps of a function, without a context.
template <void (*step)(napi_env, void*)>
napi_value ExecuteNothing(napi_env env, const Argv&)
{
    step(env, nullptr);
    return nullptr;
}

template <void (*step)(napi_env, napi_status, void*)>
napi_value CompleteNothing(napi_env env, const Argv&)
{
    step(env, napi_ok, nullptr);
    return nullptr;
}

napi_value HandleNothing(napi_env env, const Argv&)
{
    return NapiUtil::HandleAsyncWork<BaseContext>(env, nullptr, "Nothing", nullptr, nullptr);
}

// A bare context, whose complete step answers undefined.
napi_value HandleBare(napi_env env, const Argv&)
{
    const auto execute = [](napi_env, void*) {
    };
    const auto complete = [](napi_env jsEnv, napi_status, void* data) {
        NapiUtil::Handle2ValueCallback(jsEnv, static_cast<BaseContext*>(data), NapiUtil::CreateUndefined(jsEnv));
    };
    return NapiUtil::HandleAsyncWork(env, new BaseContext(), "Bare", execute, complete);
}

napi_value AnswerNothing(napi_env env, const Argv&)
{
    NapiUtil::Handle2ValueCallback(env, nullptr, nullptr);
    return nullptr;
}

// The context has neither a callback nor a promise.
napi_value AnswerNobody(napi_env env, const Argv&)
{
    NapiUtil::Handle2ValueCallback(env, new BaseContext, nullptr);
    return nullptr;
}

// (code)
napi_value ThrowErrors(napi_env env, const Argv& argv)
{
    NapiUtil::ThrowError(env, NapiUtil::GetInt32(env, argv[0]), "message");
    NapiUtil::ThrowError(env, 1, "while one is pending");
    return nullptr;
}

napi_value GetFirstElement(napi_env env, const Argv& argv)
{
    return NapiUtil::GetElement(env, argv[0], 0);
}

napi_value GetStrings(napi_env env, const Argv& argv)
{
    std::vector<std::string> list = {""};
    NapiUtil::GetStrings(env, argv[0], list, MAX_STRING_LENGTH);
    return Give(env, list);
}

napi_value ReadItems(napi_env env, const Argv& argv)
{
    std::vector<std::shared_ptr<ConfigInfo>> items;
    FillConfigInfoVector(env, argv[0], items);
    return nullptr;
}

struct NamedProbe {
    const char* name;
    Probe probe;
};

const NamedProbe PROBES[] = {
    {"NativeGetModemLogStatus", ExecuteNothing<NativeGetModemLogStatus>},
    {"GetModemLogStatusCallback", CompleteNothing<GetModemLogStatusCallback>},
    {"NativeHandleModemLogSwitch", ExecuteNothing<NativeHandleModemLogSwitch>},
    {"HandleModemLogSwitchCallback", CompleteNothing<HandleModemLogSwitchCallback>},
    {"NativeGetModemLogConfig", ExecuteNothing<NativeGetModemLogConfig>},
    {"GetModemLogConfigCallback", CompleteNothing<GetModemLogConfigCallback>},
    {"NativeGetModemLogDirectPackConfig", ExecuteNothing<NativeGetModemLogDirectPackConfig>},
    {"GetModemLogDirectPackConfigCallback", CompleteNothing<GetModemLogDirectPackConfigCallback>},
    {"NativeGetModemLogLogMasks", ExecuteNothing<NativeGetModemLogLogMasks>},
    {"GetModemLogLogMasksCallback", CompleteNothing<GetModemLogLogMasksCallback>},
    {"NativeChangeModemLogConfig", ExecuteNothing<NativeChangeModemLogConfig>},
    {"ChangeModemLogConfigCallback", CompleteNothing<ChangeModemLogConfigCallback>},
    {"NativeSendModemLogCommand", ExecuteNothing<NativeSendModemLogCommand>},
    {"SendModemLogCommandCallback", CompleteNothing<SendModemLogCommandCallback>},
    {"NativeGetTcpdumpStatus", ExecuteNothing<NativeGetTcpdumpStatus>},
    {"GetTcpdumpStatusCallback", CompleteNothing<GetTcpdumpStatusCallback>},
    {"NativeHandleTcpdumpSwitch", ExecuteNothing<NativeHandleTcpdumpSwitch>},
    {"HandleTcpdumpSwitchCallback", CompleteNothing<HandleTcpdumpSwitchCallback>},
    {"NativeGetTcpdumpConfig", ExecuteNothing<NativeGetTcpdumpConfig>},
    {"GetTcpdumpConfigCallback", CompleteNothing<GetTcpdumpConfigCallback>},
    {"NativeChangeTcpdumpConfig", ExecuteNothing<NativeChangeTcpdumpConfig>},
    {"ChangeTcpdumpConfigCallback", CompleteNothing<ChangeTcpdumpConfigCallback>},
    {"NativeHandleBluetoothCallPcmLogSwitch", ExecuteNothing<NativeHandleBluetoothCallPcmLogSwitch>},
    {"HandleBluetoothCallPcmLogSwitchCallback", CompleteNothing<HandleBluetoothCallPcmLogSwitchCallback>},
    {"OnGlobalExecuteCallback", ExecuteNothing<OnGlobalExecuteCallback>},
    {"OnGlobalCompleteCallback", CompleteNothing<OnGlobalCompleteCallback>},
    {"handleNothing", HandleNothing},
    {"handleBare", HandleBare},
    {"answerNothing", AnswerNothing},
    {"answerNobody", AnswerNobody},
    {"throwErrors", ThrowErrors},
    {"getFirstElement", GetFirstElement},
    {"getBooleans", Append<bool, NapiUtil::GetBooleans>},
    {"getInt32s", Append<int, NapiUtil::GetInt32s>},
    {"getStrings", GetStrings},
    {"fillStringVector", Append<std::string, FillStringVector>},
    {"fillConfigInfoVector", ReadItems},
};

__attribute__((constructor)) void RegisterProbes()
{
    std::vector<napi_property_descriptor> functions;
    for (const NamedProbe& probe : PROBES) {
        functions.push_back({probe.name, nullptr, Run, nullptr, nullptr, nullptr, napi_enumerable,
                             reinterpret_cast<void*>(probe.probe)});
    }
    ZelkTest::AddProbes(functions);
}

} // namespace
