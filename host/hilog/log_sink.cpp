#include "log_sink.h"

#include <algorithm>
#include <chrono>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <pthread.h>
#include <string_view>
#include <sys/stat.h>
#include <utility>

#include "host_setting.h"

namespace OHOS::Host {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using std::chrono::system_clock;

constexpr const char* LEVEL_VARIABLE = "HILOG_LEVEL";
constexpr const char* FILE_VARIABLE = "HILOG_FILE";
constexpr std::string_view LEVEL_NAMES = "DIWEFX"; // From LOG_DEBUG on; X is above all levels.
constexpr mode_t FILE_MODE = 0644;

// After a loss: long enough for another thread to write its line.
constexpr milliseconds SHORT_WAIT_FOR_LOCK{10};

// Made when the library is loaded, and never destroyed: other threads may log until the very end.
LogSink* const g_sink = new LogSink;

// The capture's function may no longer exist by then.
struct CaptureEndsWithProcess {
    ~CaptureEndsWithProcess()
    {
        g_sink->SetCapture(nullptr);
    }
} g_captureEndsWithProcess;

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
    return *g_sink;
}

LogSink::LogSink()
{
    tzset(); // After this localtime_r does not read TZ, which threads other than the first may not do.
    ReadLevel();
    OpenFile();
    lowestWanted_ = level_;
    // Otherwise a child forked while another thread is writing could never write.
    const auto lock = [] {
        g_sink->outputMutex_.lock();
        g_sink->captureMutex_.lock();
    };
    const auto unlock = [] {
        g_sink->captureMutex_.unlock();
        g_sink->outputMutex_.unlock();
    };
    pthread_atfork(lock, unlock, unlock);
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
    if (name.empty()) {
        return;
    }
    // O_NONBLOCK: opening a pipe that has no reader yet fails instead of blocking the program.
    const int file = open(name.data(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, FILE_MODE);
    if (file < 0) {
        ReportSetting(FILE_VARIABLE, name, "cannot be opened; lines go to standard error");
    } else {
        descriptor_ = file;
        struct stat status {};
        isRegularFile_ = fstat(file, &status) == 0 && S_ISREG(status.st_mode);
    }
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

void LogSink::CountLoss()
{
    ++lost_;
}

int LogSink::Put(LogLevel level, unsigned int domain, const char* tag, std::string& line, size_t messageStart)
{
    if (level < level_) {
        Show(level, domain, tag, std::string_view(line).substr(messageStart));
        return 0;
    }
    const Deadline deadline = isRegularFile_ ? Deadline() : steady_clock::now() + LONGEST_WAIT_FOR_READER;
    std::unique_lock<TimedMutex> lock(outputMutex_, std::try_to_lock);
    if (!lock) {
        // With the system clock: ThreadSanitizer does not see a lock that is waited for with the steady clock.
        const auto wait = lost_ == 0 ? LONGEST_WAIT_FOR_READER : SHORT_WAIT_FOR_LOCK;
        static_cast<void>(lock.try_lock_until(system_clock::now() + wait));
    }
    // With the lock, so that a capture gets lines in the order in which they are written; without it if they are lost.
    Show(level, domain, tag, std::string_view(line).substr(messageStart));
    const int written = lock ? Write(line, deadline) : -1;
    if (written < 0) {
        CountLoss();
    }
    return written;
}

void LogSink::Show(LogLevel level, unsigned int domain, const char* tag, std::string_view message)
{
    const std::lock_guard<std::mutex> lock(captureMutex_);
    if (capture_) {
        capture_({level, domain, tag, std::string(message)});
    }
}

int LogSink::Write(std::string& line, Deadline deadline)
{
    EscapeLineFeeds(line, TIME_STAMP_SIZE);
    line += '\n';
    Stamp(line.data());
    const size_t size = line.size();
    const size_t lost = lost_;
    const std::string report = lost == 0 ? "" : LossReport(lost);
    line.insert(0, report);
    const size_t written = isRegularFile_ ? WriteToFile(descriptor_, line)
                                          : WriteUntil(descriptor_, line, lost == 0 ? deadline : Deadline());
    if (written > 0) {
        isBrokenOff_ = line[written - 1] != '\n';
    }
    if (written >= report.size()) {
        lost_ -= lost;
    }
    return written == line.size() ? static_cast<int>(std::min<size_t>(size, INT_MAX)) : -1;
}

std::string LogSink::LossReport(size_t lost)
{
    std::string report;
    AppendHeader(report, LOG_WARN, 0, "HILOG");
    report += std::to_string(lost) + " lines were lost\n";
    Stamp(report.data());
    return isBrokenOff_ ? '\n' + report : report;
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

} // namespace OHOS::Host
