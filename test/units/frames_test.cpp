// What is freed of a call that cannot start, with a runtime whose functions fail as they are told to.
#include <set>

#include <gtest/gtest.h>

#include "napi/util/napi_context.h"
#include "napi/util/napi_util.h"

namespace {

std::set<std::string> g_failing; // Functions of the runtime.
int g_contexts = 0;              // Storage of the async frame's contexts.
int g_members = 0;

char g_promise;

napi_value Promise()
{
    return reinterpret_cast<napi_value>(&g_promise);
}

} // namespace

#define FUNCTION(name, ...)                                                                                            \
    napi_status name(__VA_ARGS__)                                                                                      \
    {                                                                                                                  \
        return g_failing.count(#name) == 0 ? napi_ok : napi_generic_failure;                                           \
    }
FUNCTION(napi_create_string_utf8, napi_env, const char*, size_t, napi_value*)
FUNCTION(napi_create_async_work, napi_env, napi_value, napi_value, napi_async_execute_callback,
         napi_async_complete_callback, void*, napi_async_work*)
FUNCTION(napi_queue_async_work, napi_env, napi_async_work)
FUNCTION(napi_throw_error, napi_env, const char*, const char*)
FUNCTION(napi_get_undefined, napi_env, napi_value*)
FUNCTION(napi_get_last_error_info, napi_env, const napi_extended_error_info**)
FUNCTION(napi_is_exception_pending, napi_env, bool*)
FUNCTION(napi_delete_async_work, napi_env, napi_async_work)
FUNCTION(napi_delete_reference, napi_env, napi_ref)
FUNCTION(napi_get_reference_value, napi_env, napi_ref, napi_value*)
FUNCTION(napi_call_function, napi_env, napi_value, napi_value, size_t, const napi_value*, napi_value*)
FUNCTION(napi_resolve_deferred, napi_env, napi_deferred, napi_value)
FUNCTION(napi_reject_deferred, napi_env, napi_deferred, napi_value)

napi_status napi_create_promise(napi_env, napi_deferred*, napi_value* promise)
{
    *promise = Promise();
    return g_failing.count("napi_create_promise") == 0 ? napi_ok : napi_generic_failure;
}

namespace OHOS::HiviewDFX {

// In place of those of base_context.cpp.
void* BaseContext::operator new(size_t size)
{
    ++g_contexts;
    return ::operator new(size);
}

void BaseContext::operator delete(void* storage)
{
    --g_contexts;
    ::operator delete(storage);
}

namespace {

struct Member {
    Member()
    {
        ++g_members;
    }
    ~Member()
    {
        --g_members;
    }
};

struct Call : BaseContext {
    Member member;
};

struct Context : NapiContext {
    Context() : NapiContext(nullptr, "Test") {}
    void OnExecuteCallback() override {}
    void OnCompleteCallback(napi_env, napi_status) override {}
    Member member;
};

TEST(Frames, FreeACallThatCannotStart)
{
    const struct {
        std::set<std::string> failing;
        bool isPromiseReturned, isCallKept;
    } rows[] = {
        {{}, true, true},
        {{"napi_create_promise"}, false, false},
        {{"napi_create_string_utf8"}, false, false},
        {{"napi_create_async_work"}, false, false},
        {{"napi_queue_async_work"}, true, true},
        {{"napi_queue_async_work", "napi_throw_error"}, false, false},
    };
    for (const auto& [failing, isPromiseReturned, isCallKept] : rows) {
        SCOPED_TRACE(testing::PrintToString(failing));
        g_failing = failing;
        napi_value returned = isPromiseReturned ? Promise() : nullptr;

        auto* call = new Call();
        EXPECT_EQ(NapiUtil::HandleAsyncWork(nullptr, call, "Test", nullptr, nullptr), returned);
        EXPECT_EQ(g_contexts, int{isCallKept});
        EXPECT_EQ(g_members, 1); // The frame does not know them.
        if (isCallKept) {
            delete call;
        }
        g_members = 0;

        auto started = std::make_unique<Call>();
        call = started.get();
        EXPECT_EQ(NapiUtil::StartCall(nullptr, std::move(started), "Test", nullptr, nullptr), returned);
        EXPECT_EQ(g_contexts, int{isCallKept});
        EXPECT_EQ(g_members, int{isCallKept});
        if (isCallKept) {
            delete call;
        }

        // A context of the other frame stays the caller's. Its own StartCall frees it with a line in the log.
        Context context;
        EXPECT_EQ(context.Execute(), returned);
        EXPECT_EQ(g_members, 1);
    }
    g_failing.clear();
}

} // namespace

} // namespace OHOS::HiviewDFX
