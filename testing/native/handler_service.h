// A log service whose operations are JavaScript functions.
#ifndef TESTING_NATIVE_HANDLER_SERVICE_H
#define TESTING_NATIVE_HANDLER_SERVICE_H

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "environment.h"
#include "host/utils/thread_safety.h"
#include "service/api/operations.h"

namespace OHOS::Host {

// Every operation may be called from any thread but the JavaScript thread. It posts its request there and waits for the
// answer, but no longer than the time limit.
class __attribute__((visibility("default"))) HandlerService : public ForwardedService {
public:
    struct Request {
        const Operation& operation;
        ArgumentValues arguments;
    };
    struct Reply {
        int32_t code = 0;
        Value answer;            // Nothing leaves the caller's answer untouched.
        bool isFallback = false; // The fallback answers; the members above are ignored.
    };
    // Runs on the JavaScript thread for each request; it calls Answer, now or later, with the id.
    using Handler = std::function<void(napi_env env, uint64_t id, const Request& request)>;

    HandlerService(std::shared_ptr<Environment> environment, Handler handler, sptr<LogService> fallback,
                   std::chrono::duration<double, std::milli> limit);

    // Answers a call; ignored when the call has already ended. Any thread.
    void Answer(uint64_t id, Reply reply);

    // Every waiting call and every later one ends with IPC_SERVICE_GONE; handlers are no longer called. Any thread.
    void End();

    const std::shared_ptr<Environment>& Home() const
    {
        return environment_;
    }

    Outcome Call(const Operation& operation, const Arguments& arguments) override;

private:
    // A thread that waits for the answer to its call.
    struct Waiting {
        void End(Reply with);

        std::condition_variable changed;
        bool isAnswered = false;
        Reply reply;
    };

    // What the handler answers.
    Reply ReplyTo(Request request);
    // The id under which `waiting` can be answered from now on.
    uint64_t Enlist(Waiting& waiting);
    void Post(uint64_t id, Request request);
    // It waits with a std::unique_lock.
    Reply Wait(uint64_t id, Waiting& waiting, std::chrono::steady_clock::time_point deadline) ZELK_NOT_ANALYZED;
    bool IsOpen();

    const std::shared_ptr<Environment> environment_;
    const Handler handler_;
    const sptr<LogService> fallback_;
    const std::chrono::duration<double, std::milli> limit_;

    std::mutex mutex_; // Guards what waits, too.
    uint64_t lastId_ ZELK_GUARDED_BY(mutex_) = 0;
    std::unordered_map<uint64_t, Waiting*> waiting_ ZELK_GUARDED_BY(mutex_);
    bool hasEnded_ ZELK_GUARDED_BY(mutex_) = false;
};

} // namespace OHOS::Host

#endif // TESTING_NATIVE_HANDLER_SERVICE_H
