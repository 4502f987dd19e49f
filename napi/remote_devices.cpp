#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "client/zelk_log_service_client.h"
#include "common/module_log.h"
#include "napi/functions.h"
#include "napi/util/arguments.h"
#include "napi/util/napi_executor.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

namespace {

// False when there are not exactly N arguments, which is logged, or when they cannot be read, which is thrown.
template <size_t N>
bool ReadExactly(napi_env env, napi_callback_info info, const char* function, Arguments<N>& arguments)
{
    if (!ReadArguments(env, info, arguments)) {
        return false;
    }
    if (arguments.count != N) {
        // The line says 1 for every N, and "uz" prints the number and a z, on purpose.
        ZELK_LOG(LOG_WARN, TAG_FRAMEWORK,
                 "[%{public}s]\"param count is incorrect. expected=%{public}uz actual=%{public}zu\"", function, 1U,
                 arguments.count);
        return false;
    }
    return true;
}

// Makes `request` through the client on a worker. It writes the reply, which the promise gets, and returns the code.
template <typename Request>
napi_value Run(napi_env env, const char* function, Request request)
{
    auto job = [request = std::move(request)] {
        std::string reply;
        const auto client = DelayedSingleton<ZelkLogServiceClient>::GetInstance();
        const int32_t code = request(*client, reply);
        return std::make_pair(code, std::move(reply));
    };
    return NapiContext::StartCall(
        std::make_unique<NapiExecutor<std::string>>(function, env, std::move(job), NapiUtil::CreateStringValue));
}

} // namespace

napi_value FetchRemoteDevicesLogs(napi_env env, napi_callback_info info)
{
    Arguments<2> arguments;
    if (!ReadExactly(env, info, "FetchRemoteDevicesLogs", arguments)) {
        return nullptr;
    }
    std::string text = NapiUtil::GetString(env, arguments[0]);
    const int64_t number = NapiUtil::GetInt64(env, arguments[1]);
    return Run(env, "FetchRemoteDevicesLogs",
               [text = std::move(text), number](ZelkLogServiceClient& client, std::string& reply) {
                   return client.FetchRemoteDevicesLogs(text, reply, number);
               });
}

napi_value QueryRemoteDevicesLogs(napi_env env, napi_callback_info info)
{
    Arguments<1> arguments;
    if (!ReadExactly(env, info, "QueryRemoteDevicesLogs", arguments)) {
        return nullptr;
    }
    return Run(env, "QueryRemoteDevicesLogs",
               [text = NapiUtil::GetString(env, arguments[0])](ZelkLogServiceClient& client, std::string& reply) {
                   return client.QueryRemoteDevicesLogs(text, reply);
               });
}

napi_value GetRemoteDevicesList(napi_env env, napi_callback_info)
{
    return Run(env, "GetRemoteDevicesList",
               [](ZelkLogServiceClient& client, std::string& reply) { return client.GetRemoteDevicesList(reply); });
}

napi_value QueryProtocolData(napi_env env, napi_callback_info info)
{
    Arguments<1> arguments;
    if (!ReadExactly(env, info, "QueryProtocolData", arguments)) {
        return nullptr;
    }
    return Run(env, "QueryProtocolData",
               [text = NapiUtil::GetString(env, arguments[0])](ZelkLogServiceClient& client, std::string& reply) {
                   const int32_t code = client.QueryProtocolData(text, reply);
                   // The function's name in this line is "operator()", on purpose.
                   ZELK_LOG(LOG_INFO, TAG_PROTOCOL, "[%{public}s]\"napi callback into response : %{public}s\"",
                            "operator()", reply.c_str());
                   return code;
               });
}

} // namespace OHOS::HiviewDFX
