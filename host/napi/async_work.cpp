#include "runtime.h"

// The platform accepts `undefined` as the async resource and ignores it; desktop runtimes refuse it and leave a
// TypeError pending.
napi_status napi_create_async_work(napi_env env, napi_value, napi_value asyncResourceName,
                                   napi_async_execute_callback execute, napi_async_complete_callback complete,
                                   void* data, napi_async_work* result)
{
    return OHOS::Host::TheRuntime().createAsyncWork(env, nullptr, asyncResourceName, execute, complete, data, result);
}
