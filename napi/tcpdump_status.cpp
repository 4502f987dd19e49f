#include "napi/tcpdump_status.h"

#include "client/zelk_log_service_client.h"
#include "common/module_log.h"
#include "napi/modem_log_status.h"
#include "napi/util/arguments.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

// The texts that name GetModemLogStatus are shared with that function on purpose.

napi_value GetTcpdumpStatus(napi_env env, napi_callback_info info)
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
    if (arguments.count == 1 && !KeepCallbackIfFunction(env, arguments[0], *context)) {
        return nullptr;
    }
    return NapiUtil::HandleAsyncWork(env, std::move(context), "GetTcpdumpStatus", NativeGetTcpdumpStatus,
                                     GetTcpdumpStatusCallback);
}

void NativeGetTcpdumpStatus(napi_env, void* data)
{
    auto* context = RecordFrom<GetModemLogStatusContext>(data);
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
    auto* context = RecordFrom<GetModemLogStatusContext>(data);
    if (context == nullptr) {
        ZELK_ERROR("GetModemLogStatusCallback: data is null");
        return;
    }
    if (!context->resolved) {
        // Never answered: the promise stays pending and the record is kept.
        ZELK_ERROR("GetModemLogStatusCallback: asyncContext's resolved is false");
        return;
    }
    napi_value status = nullptr;
    if (napi_get_boolean(env, context->status, &status) != napi_ok) {
        ZELK_ERROR("GetModemLogStatusCallback: fill bool failed");
        return;
    }
    NapiUtil::Answer(env, context, status);
}

} // namespace OHOS::HiviewDFX
