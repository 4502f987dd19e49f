#include <string>
#include <utility>

#include "client/zelk_log_service_client.h"
#include "common/module_log.h"
#include "napi/calls/unsupported_query_call.h"
#include "napi/functions.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

struct DirectPackConfigContext : BaseContext {
    std::string directPackConfig; // The service's answer.
};

napi_value GetModemLogDirectPackConfig(napi_env env, napi_callback_info info)
{
    if (!NapiUtil::IsSystemAppCall()) {
        ZELK_ERROR("GetModemLogDirectPackConfig: current app is not system app, so return");
        return nullptr;
    }
    auto context = ReadUnsupportedQueryCall<DirectPackConfigContext>(
        env, info, "GetModemLogDirectPackConfig current function not support in current time");
    if (context == nullptr) {
        return nullptr;
    }
    return NapiUtil::StartCall(env, std::move(context), "GetModemLogDirectPackConfig",
                               NativeGetModemLogDirectPackConfig, GetModemLogDirectPackConfigCallback);
}

void NativeGetModemLogDirectPackConfig(napi_env, void* data)
{
    auto* context = ContextFrom<DirectPackConfigContext>(data);
    if (context == nullptr) {
        ZELK_ERROR("NativeGetModemLogDirectPackConfig: data is null");
        return;
    }
    const auto client = DelayedSingleton<ZelkLogServiceClient>::GetInstance();
    context->errorCode = client->GetModemLogDirectPackConfig(context->directPackConfig);
    context->resolved = context->errorCode == 0;
}

void GetModemLogDirectPackConfigCallback(napi_env env, napi_status, void* data)
{
    auto* context = ContextFrom<DirectPackConfigContext>(data);
    if (context == nullptr) {
        ZELK_ERROR("GetModemLogDirectPackConfigCallback: data is null");
        return;
    }
    if (!context->resolved) {
        // Not answered: the promise stays pending and the context is kept. The text is that of the list queries.
        ZELK_ERROR("GetModemLogDirectPackConfigCallback: callbackConfigs is null");
        return;
    }
    // Ends at the text's first NUL.
    napi_value config = nullptr;
    napi_create_string_utf8(env, context->directPackConfig.c_str(), NAPI_AUTO_LENGTH, &config);
    NapiUtil::Answer(env, context, config);
}

} // namespace OHOS::HiviewDFX
