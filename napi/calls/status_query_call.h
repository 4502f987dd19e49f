// What the functions that ask whether a log is on have in common: their context, their arguments and their answer.
#ifndef ZELKLOGSERVICE_NAPI_CALLS_STATUS_QUERY_CALL_H
#define ZELKLOGSERVICE_NAPI_CALLS_STATUS_QUERY_CALL_H

#include <memory>

#include "napi/util/base_context.h"

namespace OHOS::HiviewDFX {

struct GetModemLogStatusContext : BaseContext {
    bool status = false; // Written by the service.
};

// Reads ([callback]); an argument that is not a function is ignored. `oneArgument` is the line that a function logs at
// ERROR level for a single argument; null for a function that logs none. Returns null when the call is refused (two or
// more arguments, logged) or when a Node-API call fails, which has been thrown.
std::unique_ptr<GetModemLogStatusContext> ReadStatusQueryCall(napi_env env, napi_callback_info info,
                                                              const char* oneArgument);

// Ends the call with the status. If its boolean cannot be made, that is logged and nothing is answered: the promise
// stays pending and the context is kept.
void AnswerStatus(napi_env env, GetModemLogStatusContext* context);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_CALLS_STATUS_QUERY_CALL_H
