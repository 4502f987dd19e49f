// The head of every per-call context record.
#ifndef ZELKLOGSERVICE_NAPI_UTIL_BASE_CONTEXT_H
#define ZELKLOGSERVICE_NAPI_UTIL_BASE_CONTEXT_H

#include <cstddef>
#include <cstdint>
#include <new>

#include "napi/native_api.h"

namespace OHOS::HiviewDFX {

// One asynchronous call. Each JavaScript function derives its own record from this head and adds its arguments and its
// answer. A record with a callback reference is in callback mode, any other in promise mode.
//
// A record is used by one thread at a time: the JavaScript thread until the work is queued, a worker during the execute
// step, the JavaScript thread again in the complete step. The runtime's queue hands it over; there is no lock.
//
// Ownership: the JavaScript function's until NapiUtil::HandleAsyncWork takes it, then the async frame's. The frame
// knows only this head and frees the storage through it, so it destroys no member of the derived record. Whoever hands
// a record to the frame to be freed empties it first: see NapiUtil::Answer.
struct BaseContext {
    napi_async_work work = nullptr;   // Written by HandleAsyncWork.
    napi_deferred deferred = nullptr; // Written by HandleAsyncWork in promise mode.
    napi_ref callbackRef = nullptr;   // Set by the JavaScript function in callback mode.
    bool resolved = false;            // Set by the execute step: the service call succeeded.
    int32_t errorCode = -1;           // Set by the execute step: the service call's code.

    // Storage of any derived record: zeroed, and released without a size, since the frame does not know it.
    static void* operator new(size_t size);
    static void operator delete(void* storage);
};

// The record that the runtime hands back to an execute or complete step.
template <typename Record>
Record* RecordFrom(void* data)
{
    return static_cast<Record*>(static_cast<BaseContext*>(data));
}

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_UTIL_BASE_CONTEXT_H
