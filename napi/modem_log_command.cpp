#include <memory>
#include <utility>

#include "client/zelk_log_service_client.h"
#include "common/module_log.h"
#include "config/napi_zelk_config_info_build.h"
#include "napi/functions.h"
#include "napi/util/arguments.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

struct SendCommandContext : BaseContext {
    std::shared_ptr<ConfigInfo> command;
    bool result = false; // The service's answer.
};

napi_value SendModemLogCommand(napi_env env, napi_callback_info info)
{
    if (!NapiUtil::IsSystemAppCall()) {
        ZELK_ERROR("SendModemLogCommand: current app is not system app, so return");
        return nullptr;
    }
    Arguments<2> arguments;
    if (!ReadObjectArguments(env, info, "SendModemLogCommand: Illegal params", arguments)) {
        return nullptr;
    }
    auto context = std::make_unique<SendCommandContext>();
    // Only a failing call matters here: the type is not compared again.
    napi_valuetype type = napi_undefined;
    if (!ReadType(env, arguments[0], type)) {
        return nullptr;
    }
    // Any object is a command, even an array. Missing properties leave an empty key or no parameters.
    context->command = BuildConfigInfo(env, arguments[0]);
    // The second of two arguments is the callback, whatever its type.
    if (arguments.count == 2 && !KeepCallback(env, arguments[1], *context)) {
        return nullptr;
    }
    return NapiUtil::StartCall(env, std::move(context), "SendModemLogCommand", NativeSendModemLogCommand,
                               SendModemLogCommandCallback);
}

void NativeSendModemLogCommand(napi_env, void* data)
{
    auto* context = ContextFrom<SendCommandContext>(data);
    if (context == nullptr) {
        // The text of the capture's switch, on purpose.
        ZELK_ERROR("NativeHandleTcpdumpSwitch: data is null");
        return;
    }
    const auto client = DelayedSingleton<ZelkLogServiceClient>::GetInstance();
    context->errorCode = client->SendModemLogCommand(context->command, context->result);
    context->resolved = context->errorCode == 0;
}

void SendModemLogCommandCallback(napi_env env, napi_status, void* data)
{
    auto* context = ContextFrom<SendCommandContext>(data);
    if (context == nullptr) {
        // The text of the modem log's switch, on purpose.
        ZELK_ERROR("HandleModemLogSwitchCallback: data is null");
        return;
    }
    if (!context->resolved) {
        // Not answered, and not logged either: the promise stays pending and the context is kept.
        return;
    }
    NapiUtil::AnswerBoolean(env, context, context->result);
}

} // namespace OHOS::HiviewDFX
