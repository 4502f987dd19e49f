#include "log_captures.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace OHOS::Host {

LogCaptures& LogCaptures::Instance()
{
    static auto* const instance = new LogCaptures; // Other threads may log after static objects are destroyed.
    return *instance;
}

std::shared_ptr<LogCaptures::Capture> LogCaptures::Start(const void* owner)
{
    auto capture = std::make_shared<Capture>(Capture{owner, {}});
    const std::lock_guard<std::mutex> lock(mutex_);
    captures_.push_back(capture);
    UpdateSlot();
    return capture;
}

void LogCaptures::Stop(const std::shared_ptr<Capture>& capture)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    captures_.erase(std::remove(captures_.begin(), captures_.end(), capture), captures_.end());
    UpdateSlot();
}

void LogCaptures::StopAllOf(const void* owner)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto firstStopped = std::remove_if(captures_.begin(), captures_.end(),
                                             [owner](const auto& capture) { return capture->owner == owner; });
    if (firstStopped != captures_.end()) {
        captures_.erase(firstStopped, captures_.end());
        UpdateSlot();
    }
}

std::vector<LogRecord> LogCaptures::Take(Capture& capture)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return std::exchange(capture.lines, {});
}

void LogCaptures::Keep(const LogRecord& record)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    for (const std::shared_ptr<Capture>& capture : captures_) {
        capture->lines.push_back(record);
    }
}

void LogCaptures::UpdateSlot()
{
    // Not wait(): with GCC 12 that needs a newer C++ library than the package may require.
    while (isUpdating_) {
        updated_.wait_for(mutex_, std::chrono::seconds(1));
    }
    isUpdating_ = true;
    LogCapture capture = captures_.empty() ? LogCapture() : [this](const LogRecord& record) {
        Keep(record);
    };
    mutex_.unlock();
    SetLogCapture(std::move(capture));
    mutex_.lock();
    isUpdating_ = false;
    updated_.notify_one();
}

} // namespace OHOS::Host
