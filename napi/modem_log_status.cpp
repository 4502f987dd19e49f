#include "napi/modem_log_status.h"

#include "client/zelk_log_service_client.h"
#include "common/module_log.h"
#include "napi/util/arguments.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

napi_value GetModemLogStatus(napi_env env, napi_callback_info info)
{
    if (!NapiUtil::IsSystemAppCall()) {
        ZELK_ERROR("GetModemLogStatus: current app is not system app, so return");
        return nullptr;
    }
    Arguments<1> arguments;
    if (!ReadArguments(env, info, arguments)) {
        return nullptr;
    }
    auto context = std::make_unique<GetModemLogStatusContext>();
    if (arguments.count > 1) {
        ZELK_ERROR("GetModemLogStatus: Illegal params number");
        return nullptr;
    }
    if (arguments.count == 1) {
        ZELK_ERROR("GetModemLogStatus: enter PARAMETER_COUNT_ONE");
        if (!KeepCallbackIfFunction(env, arguments[0], *context)) {
            return nullptr;
        }
    }
    return NapiUtil::HandleAsyncWork(env, std::move(context), "GetModemLogStatus", NativeGetModemLogStatus,
                                     GetModemLogStatusCallback);
}

void NativeGetModemLogStatus(napi_env, void* data)
{
    auto* context = RecordFrom<GetModemLogStatusContext>(data);
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
    auto* context = RecordFrom<GetModemLogStatusContext>(data);
    if (context == nullptr) {
        ZELK_ERROR("GetModemLogStatusCallback: data is null");
        return;
    }
    if (!context->resolved) {
        // The state is delivered all the same, as the value of the rejection.
        ZELK_ERROR("GetModemLogStatusCallback: asyncContext's resolved is false");
    }
    napi_value status = nullptr;
    if (napi_get_boolean(env, context->status, &status) != napi_ok) {
        ZELK_ERROR("GetModemLogStatusCallback: fill bool failed");
        return;
    }
    NapiUtil::Answer(env, context, status);
}

} // namespace OHOS::HiviewDFX
