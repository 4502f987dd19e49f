// Where HiLog's lines go.
#ifndef HOST_HILOG_LOG_SINK_H
#define HOST_HILOG_LOG_SINK_H

#include <array>
#include <atomic>
#include <ctime>
#include <mutex>
#include <string>
#include <unistd.h>

#include "hilog/capture.h"

namespace OHOS::Host {

// The bytes at the start of a line for "MM-DD hh:mm:ss.mmm".
constexpr size_t TIME_STAMP_SIZE = 18;

// The one way out of the process: reads the settings at the first line, stamps and writes lines one after the other,
// and shows them to the capture. Any thread may call any method. Lives from the load of the library to the end of the
// process; a line that comes later still is dropped.
class LogSink {
public:
    static LogSink& Instance();

    // The lowest level that somebody wants to see; all levels until the settings are read.
    static const std::atomic<int>& LowestWanted()
    {
        return lowestWanted_;
    }

    // Reads the settings, at the first call.
    void Prepare();
    // `line` is to be written but for its time stamp, for which there is room at its start, and its end of line. Its
    // message starts at `messageStart`. Returns the number of bytes written, -1 when they could not be.
    int Put(LogLevel level, unsigned int domain, const char* tag, std::string& line, size_t messageStart);
    void SetCapture(LogCapture capture);

    LogSink();
    ~LogSink();
    LogSink(const LogSink&) = delete;
    LogSink& operator=(const LogSink&) = delete;

private:
    static void LockForFork();
    static void UnlockAfterFork();

    // With `mutex_` held:
    void ReadLevel();
    void OpenFile();
    void UpdateLowestWanted();
    void Stamp(char* stamp);
    bool Write(const std::string& line);

    static std::atomic<int> lowestWanted_;

    std::mutex mutex_; // Guards everything below, and keeps lines whole that take more than one write.
    std::atomic<bool> prepared_{false};
    int level_ = LOG_LEVEL_MAX;      // Above all levels: no line is written.
    int descriptor_ = STDERR_FILENO; // Negative after the end.
    bool isRegularFile_ = false;     // No reader can go away.
    LogCapture capture_;
    std::time_t second_ = -1; // The one that `stamp_` stands for.
    std::array<char, TIME_STAMP_SIZE> stamp_{};
};

} // namespace OHOS::Host

#endif // HOST_HILOG_LOG_SINK_H
