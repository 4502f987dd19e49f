#include "log_sink.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <pthread.h>
#include <string_view>
#include <sys/stat.h>

#include "host_setting.h"
#include "write_whole.h"

namespace OHOS::Host {

namespace {

constexpr const char* LEVEL_VARIABLE = "HILOG_LEVEL";
constexpr const char* FILE_VARIABLE = "HILOG_FILE";
constexpr std::string_view LEVEL_NAMES = "DIWEFX"; // From LOG_DEBUG on; X is above all levels.
constexpr mode_t FILE_MODE = 0644;

// Made when the library is loaded, so before anything that logs and destroyed after it.
LogSink g_sink;

// Makes "\n" of every line feed from `start` on. Works from the end, so that a long text is moved only once.
void EscapeLineFeeds(std::string& text, size_t start)
{
    const auto count = std::count(text.begin() + static_cast<std::ptrdiff_t>(start), text.end(), '\n');
    size_t source = text.size();
    text.resize(text.size() + static_cast<size_t>(count));
    for (size_t target = text.size(); target != source;) {
        const char character = text[--source];
        text[--target] = character == '\n' ? 'n' : character;
        if (character == '\n') {
            text[--target] = '\\';
        }
    }
}

} // namespace

std::atomic<int> LogSink::lowestWanted_{LOG_LEVEL_MIN};

LogSink& LogSink::Instance()
{
    return g_sink;
}

LogSink::LogSink()
{
    // Else a child made while another thread is writing could never write.
    pthread_atfork(LockForFork, UnlockAfterFork, UnlockAfterFork);
}

LogSink::~LogSink()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    lowestWanted_.store(LOG_LEVEL_MAX, std::memory_order_relaxed);
    capture_ = nullptr;
    if (descriptor_ > STDERR_FILENO) {
        close(descriptor_);
    }
    descriptor_ = -1;
}

void LogSink::LockForFork()
{
    g_sink.mutex_.lock();
}

void LogSink::UnlockAfterFork()
{
    g_sink.mutex_.unlock();
}

void LogSink::Prepare()
{
    if (prepared_.load(std::memory_order_acquire)) {
        return;
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    if (!prepared_) {
        ReadLevel();
        OpenFile();
        prepared_.store(true, std::memory_order_release);
        UpdateLowestWanted();
    }
}

void LogSink::ReadLevel()
{
    const std::string_view name = Setting(LEVEL_VARIABLE);
    const size_t index = name.size() == 1 ? LEVEL_NAMES.find(name) : std::string_view::npos;
    if (index != std::string_view::npos) {
        level_ = LOG_DEBUG + static_cast<int>(index);
    } else if (!name.empty()) {
        ReportSetting(LEVEL_VARIABLE, name, "not one of D, I, W, E, F and X; no lines are written");
    }
}

void LogSink::OpenFile()
{
    const std::string_view name = Setting(FILE_VARIABLE);
    if (!name.empty()) {
        // A pipe that nobody reads yet cannot be opened, rather than holding up the first line for good.
        constexpr int FLAGS = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
        const int file = open(name.data(), FLAGS, FILE_MODE);
        if (file < 0) {
            ReportSetting(FILE_VARIABLE, name, "cannot be opened; lines go to standard error");
        } else {
            descriptor_ = file;
        }
    }
    struct stat status {};
    isRegularFile_ = fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode);
}

void LogSink::UpdateLowestWanted()
{
    lowestWanted_.store(prepared_ && !capture_ ? level_ : LOG_LEVEL_MIN, std::memory_order_relaxed);
}

void LogSink::SetCapture(LogCapture capture)
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        std::swap(capture_, capture);
        UpdateLowestWanted();
    }
    // The previous capture is destroyed here, with the lock free for what its destructor logs.
}

int LogSink::Put(LogLevel level, unsigned int domain, const char* tag, std::string& line, size_t messageStart)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (capture_) {
        capture_({level, domain, tag, std::string(std::string_view(line).substr(messageStart))});
    }
    if (level < level_) {
        return 0;
    }
    EscapeLineFeeds(line, TIME_STAMP_SIZE);
    line += '\n';
    Stamp(line.data());
    return Write(line) ? static_cast<int>(std::min<size_t>(line.size(), INT_MAX)) : -1;
}

// Finding the local time costs more than the rest of a line, so it is done once a second.
void LogSink::Stamp(char* stamp)
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    if (now.tv_sec != second_) {
        std::tm local{};
        localtime_r(&now.tv_sec, &local);
        std::strftime(stamp_.data(), stamp_.size(), "%m-%d %H:%M:%S", &local);
        second_ = now.tv_sec;
    }
    const long milliseconds = now.tv_nsec / 1'000'000;
    stamp_[14] = '.';
    stamp_[15] = static_cast<char>('0' + milliseconds / 100);
    stamp_[16] = static_cast<char>('0' + milliseconds / 10 % 10);
    stamp_[17] = static_cast<char>('0' + milliseconds % 10);
    std::memcpy(stamp, stamp_.data(), stamp_.size());
}

bool LogSink::Write(const std::string& line)
{
    std::optional<BrokenPipeGuard> guard;
    if (!isRegularFile_) {
        guard.emplace();
    }
    return WriteWhole(descriptor_, line);
}

} // namespace OHOS::Host
