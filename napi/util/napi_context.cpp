#include "napi/util/napi_context.h"

#include <utility>

#include "common/module_log.h"
#include "napi/util/checked_call.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

NapiContext::NapiContext(napi_env contextEnv, std::string contextName) : name(std::move(contextName)), env(contextEnv)
{
    ZELK_LOG(LOG_INFO, TAG_FRAMEWORK, "[%{public}s]\"[%{public}s]\"", "NapiContext", name.c_str());
}

NapiContext::~NapiContext()
{
    if (work != nullptr) {
        napi_delete_async_work(env, work);
    }
    ZELK_LOG(LOG_INFO, TAG_FRAMEWORK, "[%{public}s]\"[%{public}s]\"", "~NapiContext", name.c_str());
}

napi_value NapiContext::Execute()
{
    napi_value promise = nullptr;
    QueueWork(&promise);
    return promise;
}

napi_value NapiContext::StartCall(std::unique_ptr<NapiContext> context)
{
    napi_value promise = nullptr;
    if (context->QueueWork(&promise)) {
        static_cast<void>(context.release());
    }
    return promise;
}

bool NapiContext::QueueWork(napi_value* promise)
{
    napi_value created = nullptr;
    if (!CheckCall(env, napi_create_promise(env, &deferred, &created)) || !CreateWork()) {
        return false;
    }
    const napi_status status = napi_queue_async_work(env, work);
    if (status == napi_ok) {
        *promise = created;
        return true;
    }
    // At INFO level, although it is an error.
    ZELK_LOG(LOG_INFO, TAG_FRAMEWORK, "[%{public}s]\"[%{public}s]napi_queue_async_work fail: errorCode=%{public}s\"",
             "Execute", name.c_str(), std::to_string(status).c_str());
    if (ThrowQueueError(env, status)) {
        *promise = created;
    }
    return false;
}

bool NapiContext::CreateWork()
{
    napi_value resource = NapiUtil::CreateUndefined(env);
    napi_value resourceName = nullptr;
    return CheckCall(env, napi_create_string_utf8(env, name.data(), name.size(), &resourceName)) &&
           CheckCall(env, napi_create_async_work(env, resource, resourceName, OnGlobalExecuteCallback,
                                                 OnGlobalCompleteCallback, this, &work));
}

void OnGlobalExecuteCallback(napi_env, void* data)
{
    ZELK_LOG(LOG_INFO, TAG_FRAMEWORK, "[%{public}s]\"enter\"", "OnGlobalExecuteCallback");
    if (data == nullptr) {
        ZELK_LOG(LOG_WARN, TAG_FRAMEWORK, "[%{public}s]\"context is null\"", "OnGlobalExecuteCallback");
        return;
    }
    static_cast<NapiContext*>(data)->OnExecuteCallback();
    ZELK_LOG(LOG_INFO, TAG_FRAMEWORK, "[%{public}s]\"leave\"", "OnGlobalExecuteCallback");
}

void OnGlobalCompleteCallback(napi_env env, napi_status status, void* data)
{
    ZELK_LOG(LOG_INFO, TAG_FRAMEWORK, "[%{public}s]\"enter\"", "OnGlobalCompleteCallback");
    if (data == nullptr) {
        ZELK_LOG(LOG_WARN, TAG_FRAMEWORK, "[%{public}s]\"context is null\"", "OnGlobalCompleteCallback");
        return;
    }
    const std::unique_ptr<NapiContext> context(static_cast<NapiContext*>(data));
    context->OnCompleteCallback(env, status);
    ZELK_LOG(LOG_INFO, TAG_FRAMEWORK, "[%{public}s]\"leave\"", "OnGlobalCompleteCallback");
}

} // namespace OHOS::HiviewDFX
