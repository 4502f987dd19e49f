// How the module handles a Node-API call that fails.
#ifndef ZELKLOGSERVICE_NAPI_UTIL_CHECKED_CALL_H
#define ZELKLOGSERVICE_NAPI_UTIL_CHECKED_CALL_H

#include "napi/native_api.h"

namespace OHOS::HiviewDFX {

// True for napi_ok. For any other status a JavaScript Error without a code is thrown, with the runtime's message for
// the call that has just failed ("empty error message" when it has none), and false is returned. Nothing is thrown when
// an exception is already pending or the runtime keeps no error record. JavaScript thread only; call it with the status
// of the last Node-API call, before any other.
bool CheckCall(napi_env env, napi_status status);

// Throws the Error for work that could not be queued: "error at napi_queue_async_work", with the status as its code.
// If that fails, throws what CheckCall throws and returns false.
bool ThrowQueueError(napi_env env, napi_status status);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_UTIL_CHECKED_CALL_H
