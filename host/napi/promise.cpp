#include "runtime.h"

// The platform makes a promise while an error is pending and leaves the error pending; desktop runtimes refuse.
napi_status napi_create_promise(napi_env env, napi_deferred* deferred, napi_value* promise)
{
    const OHOS::Host::Runtime& runtime = OHOS::Host::TheRuntime();
    const napi_status status = runtime.createPromise(env, deferred, promise);
    bool isPending = false;
    if (status != napi_pending_exception || runtime.isExceptionPending(env, &isPending) != napi_ok || !isPending) {
        return status;
    }
    napi_value error = nullptr;
    const napi_status clearStatus = runtime.getAndClearLastException(env, &error);
    if (clearStatus != napi_ok) {
        return clearStatus;
    }
    const napi_status secondStatus = runtime.createPromise(env, deferred, promise);
    const napi_status throwStatus = runtime.throwValue(env, error);
    return secondStatus != napi_ok ? secondStatus : throwStatus;
}
