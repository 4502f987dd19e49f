#include "runtime.h"

// The platform creates a promise while an error is pending and leaves the error pending; desktop runtimes refuse.
napi_status napi_create_promise(napi_env env, napi_deferred* deferred, napi_value* promise)
{
    return OHOS::Host::WithoutPendingException(
        env, [&] { return OHOS::Host::TheRuntime().createPromise(env, deferred, promise); });
}
