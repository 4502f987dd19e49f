#include <utility>

#include "client/zelk_log_service_client.h"
#include "common/module_log.h"
#include "napi/calls/status_query_call.h"
#include "napi/functions.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

// The texts that name GetModemLogStatus are shared with that function on purpose.

napi_value GetTcpdumpStatus(napi_env env, napi_callback_info info)
{
    if (!NapiUtil::IsSystemAppCall()) {
        ZELK_ERROR("GetModemLogStatus: current app is not system app, so return");
        return nullptr;
    }
    auto context = ReadStatusQueryCall(env, info, nullptr);
    if (context == nullptr) {
        return nullptr;
    }
    return NapiUtil::StartCall(env, std::move(context), "GetTcpdumpStatus", NativeGetTcpdumpStatus,
                               GetTcpdumpStatusCallback);
}

void NativeGetTcpdumpStatus(napi_env, void* data)
{
    auto* context = ContextFrom<GetModemLogStatusContext>(data);
    if (context == nullptr) {
        ZELK_ERROR("NativeGetTcpdumpStatus: data is null");
        return;
    }
    const auto client = DelayedSingleton<ZelkLogServiceClient>::GetInstance();
    context->errorCode = client->GetTcpdumpStatus(context->status);
    context->resolved = context->errorCode == 0;
}

void GetTcpdumpStatusCallback(napi_env env, napi_status, void* data)
{
    auto* context = ContextFrom<GetModemLogStatusContext>(data);
    if (context == nullptr) {
        ZELK_ERROR("GetModemLogStatusCallback: data is null");
        return;
    }
    if (!context->resolved) {
        // Not answered: the promise stays pending and the context is kept.
        ZELK_ERROR("GetModemLogStatusCallback: asyncContext's resolved is false");
        return;
    }
    AnswerStatus(env, context);
}

} // namespace OHOS::HiviewDFX
