#include "handler_service.h"

#include <algorithm>
#include <utility>

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

HandlerService::HandlerService(std::shared_ptr<Environment> environment, Handler handler, sptr<Service> fallback,
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
        waiting->End(OnlyCode(CODE_GONE));
    }
    waiting_.clear();
}

bool HandlerService::IsOpen()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return !hasEnded_;
}

template <typename Out, typename Ask>
int32_t HandlerService::Call(Request request, Out& out, Ask ask)
{
    Reply reply = ReplyTo(std::move(request));
    if (reply.isFallback) {
        return ask(*fallback_);
    }
    if (auto* answer = std::get_if<Out>(&reply.answer)) {
        out = std::move(*answer);
    }
    return reply.code;
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
        waiting.End(OnlyCode(CODE_GONE));
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
        Answer(id, OnlyCode(CODE_GONE));
    }
}

HandlerService::Reply HandlerService::Wait(uint64_t id, Waiting& waiting, Clock::time_point deadline)
{
    std::unique_lock<std::mutex> lock(mutex_);
    while (!waiting.isAnswered) {
        const auto now = Clock::now();
        if (now >= deadline) {
            waiting_.erase(id);
            return OnlyCode(CODE_LATE);
        }
        if (waiting.changed.wait_until(lock, std::min(deadline, now + PING_INTERVAL)) == std::cv_status::timeout) {
            lock.unlock();
            environment_->Ping();
            lock.lock();
        }
    }
    return std::move(waiting.reply);
}

int32_t HandlerService::GetModemLogConfig(std::vector<std::string>& keys, std::vector<std::string>& values)
{
    return Call({__func__, {keys}}, values, [&](Service& service) { return service.GetModemLogConfig(keys, values); });
}

int32_t HandlerService::GetModemLogDirectPackConfig(std::string& config)
{
    return Call({__func__, {}}, config, [&](Service& service) { return service.GetModemLogDirectPackConfig(config); });
}

int32_t HandlerService::GetModemLogLogMasks(std::vector<std::string>& masks)
{
    return Call({__func__, {}}, masks, [&](Service& service) { return service.GetModemLogLogMasks(masks); });
}

int32_t HandlerService::GetModemLogStatus(bool& status)
{
    return Call({__func__, {}}, status, [&](Service& service) { return service.GetModemLogStatus(status); });
}

int32_t HandlerService::HandleModemLogSwitch(bool on, bool& result)
{
    return Call({__func__, {on}}, result, [&](Service& service) { return service.HandleModemLogSwitch(on, result); });
}

int32_t HandlerService::HandleModemLogSwitch(bool on, std::vector<std::string>& configs, bool& result)
{
    return Call({__func__, {on, configs}}, result,
                [&](Service& service) { return service.HandleModemLogSwitch(on, configs, result); });
}

int32_t HandlerService::SendModemLogCommand(std::string command, bool& result)
{
    return Call({__func__, {command}}, result,
                [&](Service& service) { return service.SendModemLogCommand(command, result); });
}

int32_t HandlerService::ChangeModemLogConfig(std::vector<std::string>& configs, bool& result)
{
    return Call({__func__, {configs}}, result,
                [&](Service& service) { return service.ChangeModemLogConfig(configs, result); });
}

int32_t HandlerService::GetTcpdumpStatus(bool& status)
{
    return Call({__func__, {}}, status, [&](Service& service) { return service.GetTcpdumpStatus(status); });
}

int32_t HandlerService::GetTcpdumpConfig(std::vector<std::string> keys, std::vector<std::string>& values)
{
    return Call({__func__, {keys}}, values, [&](Service& service) { return service.GetTcpdumpConfig(keys, values); });
}

int32_t HandlerService::ChangeTcpdumpConfig(std::vector<std::string>& configs, bool& result)
{
    return Call({__func__, {configs}}, result,
                [&](Service& service) { return service.ChangeTcpdumpConfig(configs, result); });
}

int32_t HandlerService::HandleTcpdumpSwitch(bool on, bool& result)
{
    return Call({__func__, {on}}, result, [&](Service& service) { return service.HandleTcpdumpSwitch(on, result); });
}

int32_t HandlerService::HandleTcpdumpSwitch(bool on, std::vector<std::string>& configs, bool& result)
{
    return Call({__func__, {on, configs}}, result,
                [&](Service& service) { return service.HandleTcpdumpSwitch(on, configs, result); });
}

int32_t HandlerService::HandleBluetoothCallPcmLogSwitch(bool on)
{
    std::monostate none;
    return Call({__func__, {on}}, none, [&](Service& service) { return service.HandleBluetoothCallPcmLogSwitch(on); });
}

int32_t HandlerService::FetchRemoteDevicesLogs(const std::string& request, std::string& response, int64_t value)
{
    return Call({__func__, {request, value}}, response,
                [&](Service& service) { return service.FetchRemoteDevicesLogs(request, response, value); });
}

int32_t HandlerService::QueryRemoteDevicesLogs(const std::string& request, std::string& response)
{
    return Call({__func__, {request}}, response,
                [&](Service& service) { return service.QueryRemoteDevicesLogs(request, response); });
}

int32_t HandlerService::GetRemoteDevicesList(std::string& response)
{
    return Call({__func__, {}}, response, [&](Service& service) { return service.GetRemoteDevicesList(response); });
}

int32_t HandlerService::QueryProtocolData(const std::string& request, std::string& response)
{
    return Call({__func__, {request}}, response,
                [&](Service& service) { return service.QueryProtocolData(request, response); });
}

} // namespace OHOS::Host
