// sendModemLogCommand(command[, callback]): sends one command to the modem log.
#ifndef ZELKLOGSERVICE_NAPI_MODEM_LOG_COMMAND_H
#define ZELKLOGSERVICE_NAPI_MODEM_LOG_COMMAND_H

#include <memory>

#include "config/config_info.h"
#include "napi/util/base_context.h"

namespace OHOS::HiviewDFX {

struct SendCommandContext : BaseContext {
    std::shared_ptr<ConfigInfo> command;
    bool result = false; // The service's answer.
};

napi_value SendModemLogCommand(napi_env env, napi_callback_info info);
void NativeSendModemLogCommand(napi_env env, void* data);
void SendModemLogCommandCallback(napi_env env, napi_status status, void* data);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_MODEM_LOG_COMMAND_H
