#include <utility>

#include "client/zelk_log_service_client.h"
#include "common/module_log.h"
#include "napi/calls/status_query_call.h"
#include "napi/functions.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

napi_value GetModemLogStatus(napi_env env, napi_callback_info info)
{
    if (!NapiUtil::IsSystemAppCall()) {
        ZELK_ERROR("GetModemLogStatus: current app is not system app, so return");
        return nullptr;
    }
    // At ERROR level, although nothing is wrong with one argument.
    auto context = ReadStatusQueryCall(env, info, "GetModemLogStatus: enter PARAMETER_COUNT_ONE");
    if (context == nullptr) {
        return nullptr;
    }
    return NapiUtil::StartCall(env, std::move(context), "GetModemLogStatus", NativeGetModemLogStatus,
                               GetModemLogStatusCallback);
}

void NativeGetModemLogStatus(napi_env, void* data)
{
    auto* context = ContextFrom<GetModemLogStatusContext>(data);
    if (context == nullptr) {
        ZELK_ERROR("NativeGetModemLogStatus: data is null");
        return;
    }
    const auto client = DelayedSingleton<ZelkLogServiceClient>::GetInstance();
    context->errorCode = client->GetModemLogStatus(context->status);
    context->resolved = context->errorCode == 0;
}

void GetModemLogStatusCallback(napi_env env, napi_status, void* data)
{
    auto* context = ContextFrom<GetModemLogStatusContext>(data);
    if (context == nullptr) {
        ZELK_ERROR("GetModemLogStatusCallback: data is null");
        return;
    }
    if (!context->resolved) {
        // The status is delivered all the same, as the value of the rejection.
        ZELK_ERROR("GetModemLogStatusCallback: asyncContext's resolved is false");
    }
    AnswerStatus(env, context);
}

} // namespace OHOS::HiviewDFX
