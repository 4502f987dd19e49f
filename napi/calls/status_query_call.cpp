#include "napi/calls/status_query_call.h"

#include "common/module_log.h"
#include "napi/util/arguments.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

// The texts name GetModemLogStatus whichever function is called, on purpose.

std::unique_ptr<GetModemLogStatusContext> ReadStatusQueryCall(napi_env env, napi_callback_info info,
                                                              const char* oneArgument)
{
    Arguments<1> arguments;
    if (!ReadArguments(env, info, arguments)) {
        return nullptr;
    }
    if (arguments.count > 1) {
        ZELK_ERROR("GetModemLogStatus: Illegal params number");
        return nullptr;
    }
    auto context = std::make_unique<GetModemLogStatusContext>();
    if (arguments.count == 1) {
        if (oneArgument != nullptr) {
            ZELK_ERROR("%{public}s", oneArgument);
        }
        if (!KeepCallbackIfFunction(env, arguments[0], *context)) {
            return nullptr;
        }
    }
    return context;
}

void AnswerStatus(napi_env env, GetModemLogStatusContext* context)
{
    napi_value status = nullptr;
    if (napi_get_boolean(env, context->status, &status) != napi_ok) {
        // Not answered: the promise stays pending and the context is kept.
        ZELK_ERROR("GetModemLogStatusCallback: fill bool failed");
        return;
    }
    NapiUtil::Answer(env, context, status);
}

} // namespace OHOS::HiviewDFX
