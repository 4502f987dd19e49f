#include "environment.h"

#include <utility>

namespace OHOS::Host {

namespace {

bool CanRunJavaScript(napi_env env)
{
    napi_value global = nullptr;
    bool unused = false;
    return napi_get_global(env, &global) == napi_ok &&
           napi_has_named_property(env, global, "Object", &unused) == napi_ok;
}

} // namespace

std::shared_ptr<Environment> Environment::Create(napi_env env, std::function<void(Environment&)> onEnd)
{
    std::shared_ptr<Environment> environment(new Environment(std::move(onEnd)));
    auto owner = std::make_unique<std::shared_ptr<Environment>>(environment);
    napi_value name = nullptr;
    napi_create_string_utf8(env, "zelklogservice/testing", NAPI_AUTO_LENGTH, &name);
    napi_threadsafe_function function = nullptr;
    const napi_status status = napi_create_threadsafe_function(env, nullptr, nullptr, name, 0, 1, owner.get(), Finalize,
                                                               environment.get(), RunTask, &function);
    if (status != napi_ok) {
        return nullptr;
    }
    static_cast<void>(owner.release()); // Now owned by Finalize.
    // Calls that wait for a handler keep their own environment alive.
    napi_unref_threadsafe_function(env, function);
    const std::lock_guard<std::mutex> lock(environment->mutex_);
    environment->function_ = function;
    return environment;
}

bool Environment::Post(Task task)
{
    auto owned = std::make_unique<Task>(std::move(task));
    const std::lock_guard<std::mutex> lock(mutex_);
    if (!Queue(owned.get())) {
        return false;
    }
    static_cast<void>(owned.release()); // Now owned by RunTask.
    return true;
}

void Environment::Ping()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    isPinged_ = isPinged_ || Queue(nullptr);
}

bool Environment::Queue(Task* task)
{
    return !hasEnded_ && napi_call_threadsafe_function(function_, task, napi_tsfn_nonblocking) == napi_ok;
}

void Environment::RunTask(napi_env env, napi_value /*function*/, void* context, void* data)
{
    const std::unique_ptr<Task> task(static_cast<Task*>(data));
    if (env == nullptr) {
        return; // The task was still queued at the end; the context may be gone.
    }
    auto& environment = *static_cast<Environment*>(context);
    if (!CanRunJavaScript(env)) {
        environment.End();
    } else if (task) {
        (*task)(env);
    } else {
        const std::lock_guard<std::mutex> lock(environment.mutex_);
        environment.isPinged_ = false;
    }
}

void Environment::Finalize(napi_env /*env*/, void* data, void* /*hint*/)
{
    const std::unique_ptr<std::shared_ptr<Environment>> owner(static_cast<std::shared_ptr<Environment>*>(data));
    (*owner)->End();
}

void Environment::End()
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (std::exchange(hasEnded_, true)) {
            return;
        }
    }
    onEnd_(*this);
}

} // namespace OHOS::Host
