// The base of every per-call context.
#ifndef ZELKLOGSERVICE_NAPI_UTIL_BASE_CONTEXT_H
#define ZELKLOGSERVICE_NAPI_UTIL_BASE_CONTEXT_H

#include <cstddef>
#include <cstdint>

#include "napi/native_api.h"

namespace OHOS::HiviewDFX {

// One asynchronous call. Each JavaScript function derives its own context from this and adds its arguments and its
// answer. A context with a callback reference is in callback mode, any other in promise mode.
//
// A context is used by one thread at a time: the JavaScript thread until the work is queued, a worker during the
// execute step, the JavaScript thread again in the complete step. The runtime's queue hands it over; there is no lock.
//
// Made on the heap by value initialization (`new T()`, std::make_unique<T>()), which zeroes the whole storage before
// the members get their values. Owned by the JavaScript function until NapiUtil::StartCall or HandleAsyncWork takes it,
// then by the async frame, which at the end knows only this base and frees the storage through it without destroying
// any member of the derived context. NapiUtil::Answer destroys them before it hands the context over.
struct BaseContext {
    napi_async_work work = nullptr;   // Written by HandleAsyncWork.
    napi_deferred deferred = nullptr; // Written by HandleAsyncWork in promise mode.
    napi_ref callbackRef = nullptr;   // Set by the JavaScript function in callback mode.
    bool resolved = false;            // Set by the execute step: the service call succeeded.
    int32_t errorCode = -1;           // Set by the execute step: the service call's code.

    // Storage of any derived context, released without a size, because the frame does not know it.
    static void* operator new(size_t size);
    static void operator delete(void* storage);
};

// The context that the runtime hands back to an execute or complete step.
template <typename Context>
Context* ContextFrom(void* data)
{
    return static_cast<Context*>(static_cast<BaseContext*>(data));
}

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_UTIL_BASE_CONTEXT_H
