#include "log_sink.h"

#include <chrono>
#include <cstdlib>
#include <pthread.h>
#include <string_view>
#include <utility>

#include "host/utils/host_setting.h"
#include "line_header.h"

namespace OHOS::Host {

namespace {

constexpr const char* LEVEL_VARIABLE = "HILOG_LEVEL";
constexpr std::string_view LEVEL_NAMES = "DIWEFX"; // From LOG_DEBUG on; X is above all levels.

// Made when the library is loaded, and never destroyed: other threads may log until the very end.
LogSink* const g_sink = new LogSink;

int LevelSetting()
{
    const std::string_view name = Setting(LEVEL_VARIABLE);
    const size_t index = name.size() == 1 ? LEVEL_NAMES.find(name) : std::string_view::npos;
    const bool isKnown = index != std::string_view::npos;
    if (!isKnown && !name.empty()) {
        ReportSetting(LEVEL_VARIABLE, name, "not one of D, I, W, E, F and X; no lines are written");
    }
    return isKnown ? LOG_DEBUG + static_cast<int>(index) : LOG_LEVEL_MAX;
}

} // namespace

std::atomic<int> LogSink::lowestWanted_{LOG_LEVEL_MIN};

LogSink& LogSink::Instance()
{
    return *g_sink;
}

LogSink::LogSink() : level_(LevelSetting())
{
    lowestWanted_ = level_;
    // Otherwise a child forked while another thread is writing could never write.
    const auto lock = []() ZELK_ACQUIRE(g_sink->output_.mutex, g_sink->captureMutex_) {
        g_sink->output_.mutex.lock();
        g_sink->captureMutex_.lock();
    };
    const auto unlock = []() ZELK_RELEASE(g_sink->output_.mutex, g_sink->captureMutex_) {
        g_sink->captureMutex_.unlock();
        g_sink->output_.mutex.unlock();
    };
    pthread_atfork(lock, unlock, unlock);
    // The capture's function may no longer exist when other threads log until the very end.
    std::atexit([] { g_sink->SetCapture(nullptr); });
}

void LogSink::SetCapture(LogCapture capture)
{
    {
        const std::lock_guard<std::mutex> lock(captureMutex_);
        std::swap(capture_, capture);
        lowestWanted_ = capture_ ? LOG_LEVEL_MIN : level_;
    }
    // The previous capture is destroyed here, without the lock, because its destructor may log.
}

void SetLogCapture(LogCapture capture)
{
    LogSink::Instance().SetCapture(std::move(capture));
}

int LogSink::Put(LogLevel level, unsigned int domain, const char* tag, std::string& line, size_t messageStart)
{
    if (level < level_) {
        Show(level, domain, tag, line, messageStart);
        return 0;
    }
    const Deadline deadline = std::chrono::steady_clock::now() + LONGEST_WAIT_FOR_READER;
    if (!LockOutput()) {
        Show(level, domain, tag, line, messageStart);
        return Lose(level);
    }
    const std::lock_guard<TimedMutex> lock(output_.mutex, std::adopt_lock);
    // With the lock, so that a capture gets lines in the order in which they are written.
    Show(level, domain, tag, line, messageStart);
    const int written = output_.Write(line, isStuck_ ? Deadline() : deadline);
    isStuck_ = written < 0;
    return written;
}

int LogSink::Lose(LogLevel level)
{
    if (level < level_) {
        return 0;
    }
    output_.CountLoss();
    return -1;
}

bool LogSink::LockOutput()
{
    if (output_.mutex.try_lock()) {
        return true;
    }
    if (isStuck_) {
        return false;
    }
    // With the system clock: ThreadSanitizer does not see a lock that is waited for with the steady clock.
    const bool isLocked = output_.mutex.try_lock_until(std::chrono::system_clock::now() + LONGEST_WAIT_FOR_READER);
    if (!isLocked) {
        isStuck_ = true;
    }
    return isLocked;
}

void LogSink::Show(LogLevel level, unsigned int domain, const char* tag, std::string& line, size_t messageStart)
{
    Stamp(line.data());
    const std::lock_guard<std::mutex> lock(captureMutex_);
    if (capture_) {
        capture_({level, domain, tag, line.substr(messageStart), line.substr(0, messageStart)});
    }
}

} // namespace OHOS::Host
