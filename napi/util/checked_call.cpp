#include "napi/util/checked_call.h"

#include <string>

namespace OHOS::HiviewDFX {

bool CheckCall(napi_env env, napi_status status)
{
    if (status == napi_ok) {
        return true;
    }
    const napi_extended_error_info* info = nullptr;
    napi_get_last_error_info(env, &info);
    // Read now: on several runtimes the next call, even the query below, overwrites the error record.
    const char* message = info == nullptr ? nullptr : info->error_message;
    bool isPending = false;
    napi_is_exception_pending(env, &isPending);
    if (!isPending && info != nullptr) {
        napi_throw_error(env, nullptr, message == nullptr ? "empty error message" : message);
    }
    return false;
}

bool ThrowQueueError(napi_env env, napi_status status)
{
    const std::string code = std::to_string(status);
    return CheckCall(env, napi_throw_error(env, code.c_str(), "error at napi_queue_async_work"));
}

} // namespace OHOS::HiviewDFX
