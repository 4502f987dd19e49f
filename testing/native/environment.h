// The JavaScript thread of one environment, as the threads that wait for it see it.
#ifndef TESTING_NATIVE_ENVIRONMENT_H
#define TESTING_NATIVE_ENVIRONMENT_H

#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#include <node_api.h>

#include "host/utils/thread_safety.h"

namespace OHOS::Host {

// Created on its JavaScript thread. Outlives the environment itself as long as it has an owner.
class Environment {
public:
    using Task = std::function<void(napi_env env)>;

    // Null when the runtime refuses. `onEnd` is called once, on the JavaScript thread, when no more tasks can run.
    __attribute__((visibility("default"))) static std::shared_ptr<Environment>
    Create(napi_env env, std::function<void(Environment&)> onEnd);

    // Runs `task` on the JavaScript thread, in the order of the calls. False when the environment has ended. It may
    // still end before the task has run: a thread that waits for the task must ping meanwhile. Any thread.
    bool Post(Task task);

    // Makes the environment notice that it has ended. While it is ending, its thread waits for its work on the
    // runtime's pool and notifies no one; but it still runs posted tasks, up to the first call that would reach
    // JavaScript. Any thread.
    void Ping();

    // Whether this is the JavaScript thread.
    bool IsCurrent() const
    {
        return thread_ == std::this_thread::get_id();
    }

    // From now on no task runs. JavaScript thread.
    void End();

private:
    explicit Environment(std::function<void(Environment&)> onEnd) : onEnd_(std::move(onEnd)) {}

    static void RunTask(napi_env env, napi_value function, void* context, void* data);
    static void Finalize(napi_env env, void* data, void* hint);
    // With the lock, so that the function is not finalized meanwhile.
    bool Queue(Task* task) ZELK_REQUIRES(mutex_);

    const std::thread::id thread_ = std::this_thread::get_id();
    std::function<void(Environment&)> onEnd_; // JavaScript thread.

    std::mutex mutex_;
    napi_threadsafe_function function_ ZELK_GUARDED_BY(mutex_) = nullptr;
    bool hasEnded_ ZELK_GUARDED_BY(mutex_) = false;
    bool isPinged_ ZELK_GUARDED_BY(mutex_) = false; // A ping has been posted.
};

} // namespace OHOS::Host

#endif // TESTING_NATIVE_ENVIRONMENT_H
