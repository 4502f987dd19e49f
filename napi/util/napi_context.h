// The asynchronous frame of the remote-device functions: an object per call that answers by promise.
#ifndef ZELKLOGSERVICE_NAPI_UTIL_NAPI_CONTEXT_H
#define ZELKLOGSERVICE_NAPI_UTIL_NAPI_CONTEXT_H

#include <cstdint>
#include <memory>
#include <string>

#include "napi/native_api.h"

namespace OHOS::HiviewDFX {

// One asynchronous call. Made on the JavaScript thread; from Execute on it belongs to its async work.
//
// Execute, OnCompleteCallback and the destructor run on the JavaScript thread of `env`, OnExecuteCallback on a worker;
// the runtime's queue hands the context over; there is no lock.
class NapiContext {
public:
    // `contextName` names the async work and is part of every log line.
    NapiContext(napi_env contextEnv, std::string contextName);
    NapiContext(const NapiContext&) = delete;
    NapiContext& operator=(const NapiContext&) = delete;
    // Deletes the async work.
    virtual ~NapiContext();

    // The work, on a worker. Makes no Node-API call.
    virtual void OnExecuteCallback() = 0;
    // Settles the promise.
    virtual void OnCompleteCallback(napi_env completeEnv, napi_status status) = 0;

    // Makes the promise and queues the work. Returns the promise; null when a Node-API call failed, which has been
    // thrown. When only the queue call fails, an Error "error at napi_queue_async_work" with the status as code is
    // thrown and the promise, which never settles, is returned all the same.
    //
    // The context was made with `new` and belongs to the queued work, which deletes it after OnCompleteCallback. When
    // the work cannot be queued, nothing is deleted here, and the returned value does not show it: use StartCall.
    napi_value Execute();

    // Executes `context`, and deletes it when its work cannot be queued, as nothing can reach it then. The deferred of
    // a promise that never settles stays allocated.
    static napi_value StartCall(std::unique_ptr<NapiContext> context);

    std::string name;
    napi_env env;
    napi_async_work work = nullptr;   // Written by Execute.
    napi_deferred deferred = nullptr; // Written by Execute.
    int32_t errorCode = 0;            // Written by OnExecuteCallback: 0 is success.

private:
    bool CreateWork();
    // Does the work of Execute, which returns `*promise`. True when the work is queued.
    bool QueueWork(napi_value* promise);
};

// The execute and complete steps of this async work; `data` is its NapiContext, which the complete step deletes. Null
// data is logged and otherwise ignored.
void OnGlobalExecuteCallback(napi_env env, void* data);
void OnGlobalCompleteCallback(napi_env env, napi_status status, void* data);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_UTIL_NAPI_CONTEXT_H
