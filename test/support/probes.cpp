// Linked into the test build of the module: what no function of the module does, but a caller of its helpers may.
#include <array>
#include <memory>
#include <string>

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

// The helpers that write a line when their data is missing.
void CallWithoutData()
{
    NapiUtil::HandleAsyncWork(nullptr, static_cast<BaseContext*>(nullptr), "Nothing", nullptr, nullptr);
    NapiUtil::Handle2ValueCallback(nullptr, nullptr, nullptr);
    NapiUtil::GetElement(nullptr, nullptr, 0);
}

// Starts a call in this way, and counts what is returned.
napi_value Start(napi_env env, const std::string& way)
{
    if (way == "HandleAsyncWork") {
        return NapiUtil::HandleAsyncWork(env, new Call(), "Test", nullptr, nullptr);
    }
    if (way == "StartCall") {
        return NapiUtil::StartCall(env, std::make_unique<Call>(), "Test", nullptr, nullptr);
    }
    return (new Context(env, "Test"))->Execute();
}

void Probe(napi_env env, const std::string& name)
{
    if (name.empty()) {
        CallWithoutData();
    } else {
        ZelkTest::Count("returned", Start(env, name) == nullptr ? 0 : 1);
    }
}

// What a reference to the value gives back while the value is a pending exception, and that exception afterwards.
napi_value Keep(napi_env env, napi_value value)
{
    std::array<napi_value, 2> seen{};
    napi_ref reference = nullptr;
    napi_throw(env, value);
    napi_create_reference(env, value, 1, &reference);
    napi_get_reference_value(env, reference, &seen[0]);
    napi_delete_reference(env, reference);
    napi_get_and_clear_last_exception(env, &seen[1]);
    napi_value list = nullptr;
    napi_create_array(env, &list);
    for (uint32_t index = 0; index < seen.size(); ++index) {
        napi_set_element(env, list, index, seen[index]);
    }
    return list;
}

__attribute__((constructor)) void RegisterProbes()
{
    ZelkTest::SetProbes({Probe, Keep});
}

} // namespace
