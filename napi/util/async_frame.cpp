#include <string>

#include "common/module_log.h"
#include "ipc_skeleton.h"
#include "napi/util/checked_call.h"
#include "napi/util/napi_util.h"
#include "tokenid_kit.h"

namespace OHOS::HiviewDFX {

namespace {

// A failure before the work is queued: nobody can call back any more.
void DropCallback(napi_env env, BaseContext& context)
{
    if (context.callbackRef != nullptr) {
        napi_delete_reference(env, context.callbackRef);
        context.callbackRef = nullptr;
    }
}

// What the JavaScript function returns: `undefined` in callback mode, otherwise a new promise.
bool CreateResult(napi_env env, BaseContext& context, napi_value* result)
{
    const napi_status status = context.callbackRef != nullptr ? napi_get_undefined(env, result)
                                                              : napi_create_promise(env, &context.deferred, result);
    return IsOk(env, status);
}

bool CreateWork(napi_env env, BaseContext& context, const std::string& workName, napi_async_execute_callback execute,
                napi_async_complete_callback complete)
{
    napi_value resource = NapiUtil::CreateUndefined(env);
    napi_value resourceName = nullptr;
    if (!IsOk(env, napi_create_string_utf8(env, workName.c_str(), NAPI_AUTO_LENGTH, &resourceName))) {
        return false;
    }
    return IsOk(env, napi_create_async_work(env, resource, resourceName, execute, complete, &context, &context.work));
}

// False only when the failure to queue could not be thrown either.
bool QueueOrThrow(napi_env env, napi_async_work work)
{
    const napi_status status = napi_queue_async_work(env, work);
    if (status == napi_ok) {
        return true;
    }
    const std::string code = std::to_string(status);
    return IsOk(env, napi_throw_error(env, code.c_str(), "error at napi_queue_async_work"));
}

bool CallCallback(napi_env env, const BaseContext& context, napi_value value)
{
    napi_value recv = NapiUtil::CreateUndefined(env);
    napi_value callback = nullptr;
    if (!IsOk(env, napi_get_reference_value(env, context.callbackRef, &callback))) {
        return false;
    }
    napi_value ignored = nullptr;
    // A value that could not be made: runtimes refuse a missing list, and would follow a null in it blindly.
    const napi_value* argv = value == nullptr ? nullptr : &value;
    const napi_status status = napi_call_function(env, recv, callback, 1, argv, &ignored);
    if (!IsOk(env, status) || !IsOk(env, napi_delete_reference(env, context.callbackRef))) {
        return false;
    }
    ZELK_DEBUG("Handle2ValueCallback normal callback end");
    return true;
}

bool SettlePromise(napi_env env, const BaseContext& context, napi_value value)
{
    ZELK_DEBUG("Handle2ValueCallback start promise callback");
    const napi_status status = context.resolved ? napi_resolve_deferred(env, context.deferred, value)
                                                : napi_reject_deferred(env, context.deferred, value);
    if (!IsOk(env, status)) {
        return false;
    }
    ZELK_DEBUG("Handle2ValueCallback promise callback end");
    return true;
}

} // namespace

bool NapiUtil::IsSystemAppCall()
{
    return Security::AccessToken::TokenIdKit::IsSystemAppByFullTokenID(IPCSkeleton::GetCallingFullTokenID());
}

napi_value NapiUtil::CreateUndefined(napi_env env)
{
    napi_value undefined = nullptr;
    return IsOk(env, napi_get_undefined(env, &undefined)) ? undefined : nullptr;
}

void NapiUtil::ThrowError(napi_env env, int32_t code, const std::string& msg)
{
    if (napi_throw_error(env, std::to_string(code).c_str(), msg.c_str()) != napi_ok) {
        ZELK_ERROR("failed to throw error, code = %{public}d, msg=%{public}s", code, msg.c_str());
    }
}

bool NapiUtil::QueueAsyncWork(napi_env env, BaseContext* context, const std::string& workName,
                              napi_async_execute_callback execute, napi_async_complete_callback complete,
                              napi_value* result)
{
    ZELK_INFO("HandleAsyncWork: workName = [%{public}s]", workName.c_str());
    if (context == nullptr) {
        ZELK_ERROR("HandleAsyncWork: error baseContext");
        return false;
    }
    if (!CreateResult(env, *context, result) || !CreateWork(env, *context, workName, execute, complete) ||
        !QueueOrThrow(env, context->work)) {
        DropCallback(env, *context);
        *result = nullptr;
        return false;
    }
    ZELK_INFO("HandleAsyncWork: end");
    return true;
}

napi_value NapiUtil::HandleAsyncWork(napi_env env, BaseContext* context, const std::string& workName,
                                     napi_async_execute_callback execute, napi_async_complete_callback complete)
{
    napi_value result = nullptr;
    if (!QueueAsyncWork(env, context, workName, execute, complete, &result)) {
        delete context;
    }
    return result;
}

void NapiUtil::Handle2ValueCallback(napi_env env, BaseContext* context, napi_value value)
{
    if (context == nullptr) {
        ZELK_INFO("Handle2ValueCallback serious error baseContext nullptr");
        return;
    }
    if (context->callbackRef != nullptr) {
        if (!CallCallback(env, *context, value)) {
            return;
        }
    } else if (context->deferred != nullptr) {
        if (!SettlePromise(env, *context, value)) {
            return;
        }
    }
    napi_delete_async_work(env, context->work);
    delete context;
    ZELK_DEBUG("Handle2ValueCallback end");
}

} // namespace OHOS::HiviewDFX
