// Not a peer but a log service that answers a query for configurations with as many replies as it is told to: more than
// the reference service gives.
#include <atomic>
#include <string>

#include "addon.h"
#include "service/api/proxy_source.h"
#include "service/reference/reference_service.h"

namespace {

using namespace OHOS;

std::atomic<uint32_t> g_count{0};

class ManyReplies : public Host::ReferenceService {
public:
    int32_t GetModemLogConfig(std::vector<std::string>&, std::vector<std::string>& values) override
    {
        values.resize(g_count);
        for (size_t i = 0; i < values.size(); ++i) {
            const std::string number = std::to_string(i);
            values[i].append(R"({"configKey":"key)").append(number);
            values[i].append(R"(","value":"{\"size\":)").append(number).append(R"(,\"name\":\"ap\"}"})");
        }
        return 0;
    }
};

// answerWith(count): from now on every query gets this many replies.
napi_value AnswerWith(napi_env env, napi_callback_info info)
{
    napi_value arguments[1] = {};
    ReadArguments(env, info, arguments);
    uint32_t count = 0;
    napi_get_value_uint32(env, arguments[0], &count);
    g_count = count;
    static const sptr<Host::LogService> service = new ManyReplies;
    Host::SetProxySource([](std::string&) { return service; });
    return nullptr;
}

} // namespace

BENCH_EXPORT napi_value napi_register_module_v1(napi_env env, napi_value exports)
{
    Export(env, exports, "answerWith", AnswerWith);
    return exports;
}
