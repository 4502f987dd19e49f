#include "handler_service.h"

#include <algorithm>
#include <utility>

#include "service/api/ipc_code.h"

namespace OHOS::Host {

namespace {

using Clock = std::chrono::steady_clock;

// How soon the end of an environment is noticed.
constexpr std::chrono::milliseconds PING_INTERVAL{25};

HandlerService::Reply OnlyCode(int32_t code)
{
    return {code, {}, false};
}

} // namespace

HandlerService::HandlerService(std::shared_ptr<Environment> environment, Handler handler, sptr<LogService> fallback,
                               std::chrono::duration<double, std::milli> limit)
    : environment_(std::move(environment)), handler_(std::move(handler)), fallback_(std::move(fallback)), limit_(limit)
{
}

// With the service's lock held.
void HandlerService::Waiting::End(Reply with)
{
    reply = std::move(with);
    isAnswered = true;
    changed.notify_one();
}

void HandlerService::Answer(uint64_t id, Reply reply)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = waiting_.find(id);
    if (found != waiting_.end()) {
        found->second->End(std::move(reply));
        waiting_.erase(found);
    }
}

void HandlerService::End()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    hasEnded_ = true;
    for (const auto& [id, waiting] : waiting_) {
        waiting->End(OnlyCode(IPC_SERVICE_GONE));
    }
    waiting_.clear();
}

bool HandlerService::IsOpen()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return !hasEnded_;
}

Outcome HandlerService::Call(const Operation& operation, const Arguments& arguments)
{
    Reply reply = ReplyTo({operation, Copies(arguments)});
    return reply.isFallback ? fallback_->Call(operation, arguments)
                            : Outcome{reply.code, std::move(reply.answer), std::nullopt};
}

HandlerService::Reply HandlerService::ReplyTo(Request request)
{
    const auto deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(limit_);
    Waiting waiting;
    const uint64_t id = Enlist(waiting);
    Post(id, std::move(request));
    return Wait(id, waiting, deadline);
}

uint64_t HandlerService::Enlist(Waiting& waiting)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const uint64_t id = ++lastId_;
    if (hasEnded_) {
        waiting.End(OnlyCode(IPC_SERVICE_GONE));
    } else {
        waiting_.emplace(id, &waiting);
    }
    return id;
}

void HandlerService::Post(uint64_t id, Request request)
{
    const sptr<HandlerService> self(this); // The task may run after this call has ended.
    const bool isPosted = environment_->Post([self, id, request = std::move(request)](napi_env env) {
        if (self->IsOpen()) {
            self->handler_(env, id, request);
        }
    });
    if (!isPosted) {
        Answer(id, OnlyCode(IPC_SERVICE_GONE));
    }
}

HandlerService::Reply HandlerService::Wait(uint64_t id, Waiting& waiting, Clock::time_point deadline)
{
    std::unique_lock<std::mutex> lock(mutex_);
    while (!waiting.isAnswered) {
        const auto now = Clock::now();
        if (now >= deadline) {
            waiting_.erase(id);
            return OnlyCode(IPC_TIMEOUT);
        }
        if (waiting.changed.wait_until(lock, std::min(deadline, now + PING_INTERVAL)) == std::cv_status::timeout) {
            lock.unlock();
            environment_->Ping();
            lock.lock();
        }
    }
    return std::move(waiting.reply);
}

} // namespace OHOS::Host
