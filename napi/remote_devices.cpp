#include "napi/remote_devices.h"

#include <string>
#include <utility>

#include "client/zelk_log_service_client.h"
#include "common/module_log.h"
#include "napi/util/arguments.h"
#include "napi/util/napi_executor.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

namespace {

using TextExecutor = NapiExecutor<std::string>;

// False when there are not exactly N arguments, which is logged, or when they cannot be read, which is thrown.
template <size_t N>
bool ReadExactly(napi_env env, napi_callback_info info, const char* function, Arguments<N>& arguments)
{
    if (!ReadArguments(env, info, arguments)) {
        return false;
    }
    if (arguments.count != N) {
        // One format for all: it says 1 whatever N is.
        ZELK_LOG(LOG_WARN, TAG_FRAMEWORK,
                 "[%{public}s]\"param count is incorrect. expected=%{public}uz actual=%{public}zu\"", function, 1U,
                 arguments.count);
        return false;
    }
    return true;
}

// On a worker: makes `request` of the client, which writes the reply.
template <typename Request>
std::pair<int, std::string> Ask(Request request)
{
    std::string reply;
    const auto client = DelayedSingleton<ZelkLogServiceClient>::GetInstance();
    const int32_t code = request(*client, reply);
    return {code, std::move(reply)};
}

napi_value Run(napi_env env, const char* function, TextExecutor::Job job)
{
    // Owns itself from here on.
    auto* executor = new TextExecutor(function, env, std::move(job), NapiUtil::CreateStringValue);
    return executor->Execute();
}

} // namespace

napi_value FetchRemoteDevicesLogs(napi_env env, napi_callback_info info)
{
    Arguments<2> arguments;
    if (!ReadExactly(env, info, "FetchRemoteDevicesLogs", arguments)) {
        return nullptr;
    }
    std::string request = NapiUtil::GetString(env, arguments[0]);
    const int64_t number = NapiUtil::GetInt64(env, arguments[1]);
    return Run(env, "FetchRemoteDevicesLogs", [request = std::move(request), number] {
        return Ask([&](ZelkLogServiceClient& client, std::string& reply) {
            return client.FetchRemoteDevicesLogs(request, reply, number);
        });
    });
}

napi_value QueryRemoteDevicesLogs(napi_env env, napi_callback_info info)
{
    Arguments<1> arguments;
    if (!ReadExactly(env, info, "QueryRemoteDevicesLogs", arguments)) {
        return nullptr;
    }
    std::string request = NapiUtil::GetString(env, arguments[0]);
    return Run(env, "QueryRemoteDevicesLogs", [request = std::move(request)] {
        return Ask([&](ZelkLogServiceClient& client, std::string& reply) {
            return client.QueryRemoteDevicesLogs(request, reply);
        });
    });
}

napi_value GetRemoteDevicesList(napi_env env, napi_callback_info)
{
    return Run(env, "GetRemoteDevicesList", [] {
        return Ask([](ZelkLogServiceClient& client, std::string& reply) { return client.GetRemoteDevicesList(reply); });
    });
}

napi_value QueryProtocolData(napi_env env, napi_callback_info info)
{
    Arguments<1> arguments;
    if (!ReadExactly(env, info, "QueryProtocolData", arguments)) {
        return nullptr;
    }
    std::string request = NapiUtil::GetString(env, arguments[0]);
    return Run(env, "QueryProtocolData", [request = std::move(request)] {
        auto answer = Ask(
            [&](ZelkLogServiceClient& client, std::string& reply) { return client.QueryProtocolData(request, reply); });
        ZELK_LOG(LOG_INFO, TAG_PROTOCOL, "[%{public}s]\"napi callback into response : %{public}s\"", "operator()",
                 answer.second.c_str());
        return answer;
    });
}

} // namespace OHOS::HiviewDFX
