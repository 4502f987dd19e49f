// The module's internals, callable from JavaScript: what they do without their data. Linked into the test build of the
// module.
#include "control.h"
#include "napi/functions.h"
#include "napi/util/napi_context.h"
#include "napi/util/napi_util.h"

namespace {

using namespace OHOS::HiviewDFX;

using Probe = napi_value (*)(napi_env env);

napi_value Run(napi_env env, napi_callback_info info)
{
    void* data = nullptr;
    napi_get_cb_info(env, info, nullptr, nullptr, nullptr, &data);
    return reinterpret_cast<Probe>(data)(env);
}

// The steps of a function, without a context.
template <void (*step)(napi_env, void*)>
napi_value ExecuteNothing(napi_env env)
{
    step(env, nullptr);
    return nullptr;
}

template <void (*step)(napi_env, napi_status, void*)>
napi_value CompleteNothing(napi_env env)
{
    step(env, napi_ok, nullptr);
    return nullptr;
}

napi_value HandleNothing(napi_env env)
{
    return NapiUtil::HandleAsyncWork(env, nullptr, "Nothing", nullptr, nullptr);
}

napi_value AnswerNothing(napi_env env)
{
    NapiUtil::Handle2ValueCallback(env, nullptr, nullptr);
    return nullptr;
}

// The context has neither a callback nor a promise.
napi_value AnswerNobody(napi_env env)
{
    NapiUtil::Handle2ValueCallback(env, new BaseContext, nullptr);
    return nullptr;
}

napi_value GetElementOfNothing(napi_env env)
{
    return NapiUtil::GetElement(env, nullptr, 0);
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
    {"answerNothing", AnswerNothing},
    {"answerNobody", AnswerNobody},
    {"getElementOfNothing", GetElementOfNothing},
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
