// The module's internals, callable from JavaScript: its steps with null data, its value helpers. Linked
// into the test build of the module.
#include <json/writer.h>

#include "config/napi_zelk_config_info_build.h"
#include "control.h"
#include "napi/functions.h"
#include "napi/util/napi_context.h"
#include "napi/util/napi_util.h"

namespace {

using namespace OHOS::HiviewDFX;

// What a probe does with its argument, null if there is none; null is undefined in JavaScript.
using Probe = napi_value (*)(napi_env env, napi_value argument);

napi_value Run(napi_env env, napi_callback_info info)
{
    size_t count = 1;
    napi_value argument = nullptr;
    void* data = nullptr;
    napi_get_cb_info(env, info, &count, &argument, nullptr, &data);
    return reinterpret_cast<Probe>(data)(env, count > 0 ? argument : nullptr);
}

// The list, as an array, after `append` was called with the argument.
template <typename T, void (*append)(napi_env, napi_value, std::vector<T>&)>
napi_value Append(napi_env env, napi_value argument)
{
    std::vector<T> list = {T()};
    append(env, argument, list);
    Json::Value array(Json::arrayValue);
    for (const T& each : list) {
        array.append(each);
    }
    const std::string text = Json::writeString(Json::StreamWriterBuilder(), array);
    napi_value value = nullptr;
    napi_run_script(env, NapiUtil::CreateStringValue(env, text), &value);
    return value;
}

// The steps of a function, without a context.
template <void (*step)(napi_env, void*)>
napi_value ExecuteNothing(napi_env env, napi_value)
{
    step(env, nullptr);
    return nullptr;
}

template <void (*step)(napi_env, napi_status, void*)>
napi_value CompleteNothing(napi_env env, napi_value)
{
    step(env, napi_ok, nullptr);
    return nullptr;
}

napi_value HandleNothing(napi_env env, napi_value)
{
    return NapiUtil::HandleAsyncWork<BaseContext>(env, nullptr, "Nothing", nullptr, nullptr);
}

// A bare context, whose complete step answers undefined.
napi_value HandleBare(napi_env env, napi_value)
{
    const auto execute = [](napi_env, void*) {
    };
    const auto complete = [](napi_env jsEnv, napi_status, void* data) {
        NapiUtil::Handle2ValueCallback(jsEnv, static_cast<BaseContext*>(data), NapiUtil::CreateUndefined(jsEnv));
    };
    return NapiUtil::HandleAsyncWork(env, new BaseContext(), "Bare", execute, complete);
}

napi_value AnswerNothing(napi_env env, napi_value)
{
    NapiUtil::Handle2ValueCallback(env, nullptr, nullptr);
    return nullptr;
}

// The context has neither a callback nor a promise.
napi_value AnswerNobody(napi_env env, napi_value)
{
    NapiUtil::Handle2ValueCallback(env, new BaseContext, nullptr);
    return nullptr;
}

// (code)
napi_value ThrowErrors(napi_env env, napi_value argument)
{
    NapiUtil::ThrowError(env, NapiUtil::GetInt32(env, argument), "message");
    NapiUtil::ThrowError(env, 1, "while one is pending");
    return nullptr;
}

napi_value GetFirstElement(napi_env env, napi_value argument)
{
    return NapiUtil::GetElement(env, argument, 0);
}

void GetStrings(napi_env env, napi_value array, std::vector<std::string>& list)
{
    NapiUtil::GetStrings(env, array, list, MAX_STRING_LENGTH);
}

napi_value ReadItems(napi_env env, napi_value argument)
{
    std::vector<std::shared_ptr<ConfigInfo>> items;
    FillConfigInfoVector(env, argument, items);
    return nullptr;
}

using NamedProbe = std::pair<const char*, Probe>;

#define STEPS(function)                                                                                                \
    NamedProbe("Native" #function, ExecuteNothing<Native##function>),                                                  \
        NamedProbe(#function "Callback", CompleteNothing<function##Callback>)

const NamedProbe PROBES[] = {
    STEPS(GetModemLogStatus),
    STEPS(HandleModemLogSwitch),
    STEPS(GetModemLogConfig),
    STEPS(GetModemLogDirectPackConfig),
    STEPS(GetModemLogLogMasks),
    STEPS(ChangeModemLogConfig),
    STEPS(SendModemLogCommand),
    STEPS(GetTcpdumpStatus),
    STEPS(HandleTcpdumpSwitch),
    STEPS(GetTcpdumpConfig),
    STEPS(ChangeTcpdumpConfig),
    STEPS(HandleBluetoothCallPcmLogSwitch),
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
    {"getStrings", Append<std::string, GetStrings>},
    {"fillStringVector", Append<std::string, FillStringVector>},
    {"fillConfigInfoVector", ReadItems},
};

__attribute__((constructor)) void RegisterProbes()
{
    std::vector<napi_property_descriptor> functions;
    for (const auto& [name, probe] : PROBES) {
        functions.push_back(
            {name, nullptr, Run, nullptr, nullptr, nullptr, napi_enumerable, reinterpret_cast<void*>(probe)});
    }
    ZelkTest::AddProbes(functions);
}

} // namespace
