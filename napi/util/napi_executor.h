// A call that runs a job on a worker and answers with its result.
#ifndef ZELKLOGSERVICE_NAPI_UTIL_NAPI_EXECUTOR_H
#define ZELKLOGSERVICE_NAPI_UTIL_NAPI_EXECUTOR_H

#include <functional>
#include <string>
#include <utility>

#include "common/module_log.h"
#include "napi/util/checked_call.h"
#include "napi/util/napi_context.h"

namespace OHOS::HiviewDFX {

// `job` runs on a worker, must not touch JavaScript, and returns its code (0 is success) and its result. `converter`
// turns the result, even that of a failed job, into the promise's value on the JavaScript thread. Neither may be empty.
//
// The promise is resolved with the value when the code is 0, and rejected with it otherwise. A converter that returns
// null rejects with a null value: runtimes refuse that, the refusal is thrown, and the promise stays pending.
template <typename T>
class NapiExecutor : public NapiContext {
public:
    using Job = std::function<std::pair<int, T>()>;
    using Converter = std::function<napi_value(napi_env, T&)>;

    NapiExecutor(std::string executorName, napi_env executorEnv, Job executorJob, Converter resultConverter)
        : NapiContext(executorEnv, std::move(executorName)),
          job(std::move(executorJob)),
          converter(std::move(resultConverter))
    {
    }

    void OnExecuteCallback() override
    {
        auto [code, answer] = job();
        errorCode = code;
        result = std::move(answer);
        ZELK_LOG(LOG_INFO, TAG_FRAMEWORK, "[%{public}s]\"[%{public}s]errorcode=%{public}d\"", "OnExecuteCallback",
                 name.c_str(), errorCode);
    }

    void OnCompleteCallback(napi_env completeEnv, napi_status) override
    {
        napi_value value = converter(completeEnv, result);
        CheckCall(completeEnv, Settle(completeEnv, value));
    }

    Job job;
    Converter converter;
    T result; // The job's, empty until the execute step.

private:
    napi_status Settle(napi_env completeEnv, napi_value value)
    {
        if (errorCode != 0) {
            ZELK_LOG(LOG_WARN, TAG_FRAMEWORK, "[%{public}s]\"[%{public}s]has some error[%{public}d], reject deferred\"",
                     "OnCompleteCallback", name.c_str(), errorCode);
            return napi_reject_deferred(completeEnv, deferred, value);
        }
        if (value == nullptr) {
            ZELK_LOG(LOG_WARN, TAG_FRAMEWORK, "[%{public}s]\"[%{public}s]reject deferred\"", "OnCompleteCallback",
                     name.c_str());
            return napi_reject_deferred(completeEnv, deferred, nullptr);
        }
        ZELK_LOG(LOG_INFO, TAG_FRAMEWORK, "[%{public}s]\"[%{public}s]resolve deferred\"", "OnCompleteCallback",
                 name.c_str());
        return napi_resolve_deferred(completeEnv, deferred, value);
    }
};

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_UTIL_NAPI_EXECUTOR_H
