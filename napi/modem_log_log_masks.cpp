#include <string>
#include <utility>
#include <vector>

#include "client/zelk_log_service_client.h"
#include "common/module_log.h"
#include "napi/calls/config_reply.h"
#include "napi/calls/unsupported_query_call.h"
#include "napi/functions.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

struct LogMasksContext : BaseContext {
    std::vector<std::string> logMasks; // The service's answer: one JSON text per mask.
};

napi_value GetModemLogLogMasks(napi_env env, napi_callback_info info)
{
    if (!NapiUtil::IsSystemAppCall()) {
        ZELK_ERROR("GetModemLogLogMasks: current app is not system app, so return");
        return nullptr;
    }
    auto context = ReadUnsupportedQueryCall<LogMasksContext>(
        env, info, "GetModemLogLogMasks current function not support in current time");
    if (context == nullptr) {
        return nullptr;
    }
    return NapiUtil::StartCall(env, std::move(context), "GetModemLogLogMasks", NativeGetModemLogLogMasks,
                               GetModemLogLogMasksCallback);
}

void NativeGetModemLogLogMasks(napi_env, void* data)
{
    auto* context = ContextFrom<LogMasksContext>(data);
    if (context == nullptr) {
        ZELK_ERROR("NativeGetModemLogLogMasks: data is null");
        return;
    }
    const auto client = DelayedSingleton<ZelkLogServiceClient>::GetInstance();
    context->errorCode = client->GetModemLogLogMasks(context->logMasks);
    context->resolved = context->errorCode == 0;
}

void GetModemLogLogMasksCallback(napi_env env, napi_status, void* data)
{
    auto* context = ContextFrom<LogMasksContext>(data);
    if (context == nullptr) {
        ZELK_ERROR("GetModemLogLogMasksCallback: data is null");
        return;
    }
    // Not answered in either of these two cases: the promise stays pending and the context is kept. The first text is
    // that of the configuration queries.
    if (context->logMasks.empty() || !context->resolved) {
        ZELK_ERROR("GetModemLogLogMasksCallback: callbackConfigs is null");
        return;
    }
    // A mask's "value" stays a string.
    napi_value masks = nullptr;
    if (!ConfigReplyToArray(env, context->logMasks, nullptr, &masks)) {
        ZELK_ERROR("GetModemLogLogMasksCallback: Failed to parse json");
        return;
    }
    NapiUtil::Answer(env, context, masks);
}

} // namespace OHOS::HiviewDFX
