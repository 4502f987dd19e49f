#include <cstdint>
#include <string>

#include "common/module_log.h"
#include "ipc_skeleton.h"
#include "napi/util/checked_call.h"
#include "napi/util/napi_util.h"
#include "tokenid_kit.h"

namespace OHOS::HiviewDFX {

namespace {

// Drops the callback, which will not be called, and makes the JavaScript function return nothing.
void Abandon(napi_env env, BaseContext& context, napi_value* result)
{
    if (context.callbackRef != nullptr) {
        napi_delete_reference(env, context.callbackRef);
        context.callbackRef = nullptr;
    }
    *result = nullptr;
}

// What the JavaScript function returns: `undefined` in callback mode, otherwise a new promise.
bool CreateResult(napi_env env, BaseContext& context, napi_value* result)
{
    const napi_status status = context.callbackRef != nullptr ? napi_get_undefined(env, result)
                                                              : napi_create_promise(env, &context.deferred, result);
    return CheckCall(env, status);
}

bool CreateWork(napi_env env, BaseContext& context, const std::string& workName, napi_async_execute_callback execute,
                napi_async_complete_callback complete)
{
    napi_value resource = NapiUtil::CreateUndefined(env);
    napi_value resourceName = nullptr;
    if (!CheckCall(env, napi_create_string_utf8(env, workName.c_str(), NAPI_AUTO_LENGTH, &resourceName))) {
        return false;
    }
    return CheckCall(env,
                     napi_create_async_work(env, resource, resourceName, execute, complete, &context, &context.work));
}

bool CallCallback(napi_env env, const BaseContext& context, napi_value value)
{
    napi_value recv = NapiUtil::CreateUndefined(env);
    napi_value callback = nullptr;
    if (!CheckCall(env, napi_get_reference_value(env, context.callbackRef, &callback))) {
        return false;
    }
    napi_value ignored = nullptr;
    // A value that could not be made is passed as a missing list, which runtimes refuse. A null in the list would crash
    // them.
    const napi_value* argv = value == nullptr ? nullptr : &value;
    const napi_status status = napi_call_function(env, recv, callback, 1, argv, &ignored);
    if (!CheckCall(env, status) || !CheckCall(env, napi_delete_reference(env, context.callbackRef))) {
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
    if (!CheckCall(env, status)) {
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
    return CheckCall(env, napi_get_undefined(env, &undefined)) ? undefined : nullptr;
}

void NapiUtil::ThrowError(napi_env env, int32_t code, const std::string& msg)
{
    if (napi_throw_error(env, std::to_string(code).c_str(), msg.c_str()) != napi_ok) {
        ZELK_ERROR("failed to throw error, code = %{public}d, msg=%{public}s", code, msg.c_str());
    }
}

napi_value NapiUtil::HandleAsyncWork(napi_env env, BaseContext* context, const std::string& workName,
                                     napi_async_execute_callback execute, napi_async_complete_callback complete)
{
    napi_value result = nullptr;
    if (!StartAsyncWork(env, context, workName, execute, complete, &result)) {
        delete context;
    }
    return result;
}

bool NapiUtil::StartAsyncWork(napi_env env, BaseContext* context, const std::string& workName,
                              napi_async_execute_callback execute, napi_async_complete_callback complete,
                              napi_value* result)
{
    ZELK_INFO("HandleAsyncWork: workName = [%{public}s]", workName.c_str());
    if (context == nullptr) {
        ZELK_ERROR("HandleAsyncWork: error baseContext");
        return false;
    }
    if (!CreateResult(env, *context, result) || !CreateWork(env, *context, workName, execute, complete)) {
        Abandon(env, *context, result);
        return false;
    }
    const napi_status status = napi_queue_async_work(env, context->work);
    // Apart from throwing, this failure changes nothing: the context stays, and the promise is returned as if the work
    // were queued.
    if (status != napi_ok && !ThrowQueueError(env, status)) {
        Abandon(env, *context, result);
        return false;
    }
    ZELK_INFO("HandleAsyncWork: end");
    return true;
}

void NapiUtil::Handle2ValueCallback(napi_env env, BaseContext* context, napi_value value)
{
    if (context == nullptr) {
        // At INFO level, although it is an error.
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
