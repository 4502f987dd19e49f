// Linked into the test build of the module: what no function of the module does, but a caller of its helpers may.
#include <memory>
#include <string>

#include "napi/util/arguments.h"
#include "napi/util/napi_context.h"
#include "napi/util/napi_util.h"
#include "test/support/control.h"

namespace {

using namespace OHOS::HiviewDFX;

// A counted member of a context.
struct Member {
    Member()
    {
        ZelkTest::Count("members", 1);
    }
    ~Member()
    {
        ZelkTest::Count("members", -1);
    }
};

struct Call : BaseContext {
    Member member;
};

struct Context : NapiContext {
    using NapiContext::NapiContext;
    void OnExecuteCallback() override {}
    void OnCompleteCallback(napi_env, napi_status) override {}
    Member member;
};

// Starts a call in this way. Without one, the helpers that write a line when their data is missing.
napi_value Start(napi_env env, const std::string& way)
{
    if (way == "HandleAsyncWork") {
        return NapiUtil::HandleAsyncWork(env, new Call(), "Test", nullptr, nullptr);
    }
    if (way == "StartCall") {
        return NapiUtil::StartCall(env, std::make_unique<Call>(), "Test", nullptr, nullptr);
    }
    if (way == "Execute") {
        return (new Context(env, "Test"))->Execute();
    }
    NapiUtil::Handle2ValueCallback(nullptr, nullptr, nullptr);
    NapiUtil::GetElement(nullptr, nullptr, 0);
    return NapiUtil::HandleAsyncWork(nullptr, static_cast<BaseContext*>(nullptr), "Nothing", nullptr, nullptr);
}

// What a reference to the value gives back while the value is a pending exception.
napi_value Keep(napi_env env, napi_value value)
{
    napi_value kept = nullptr;
    napi_ref reference = nullptr;
    napi_throw(env, value);
    napi_create_reference(env, value, 1, &reference);
    napi_get_reference_value(env, reference, &kept);
    napi_delete_reference(env, reference);
    napi_get_and_clear_last_exception(env, &value);
    return kept;
}

// probe("Keep", value), or a way to start a call.
napi_value Probe(napi_env env, napi_callback_info info)
{
    Arguments<2> arguments;
    ReadArguments(env, info, arguments);
    const std::string way = NapiUtil::GetString(env, arguments[0]);
    if (way == "Keep") {
        return Keep(env, arguments[1]);
    }
    napi_value result = Start(env, way);
    ZelkTest::Count("returned", result == nullptr ? 0 : 1);
    return result;
}

__attribute__((constructor)) void RegisterProbe()
{
    ZelkTest::g_probe = Probe;
}

} // namespace
