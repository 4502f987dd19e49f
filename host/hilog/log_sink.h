// Where HiLog's lines go.
#ifndef HOST_HILOG_LOG_SINK_H
#define HOST_HILOG_LOG_SINK_H

#include <array>
#include <atomic>
#include <ctime>
#include <mutex>
#include <string>
#include <string_view>
#include <unistd.h>

#include "hilog/capture.h"
#include "line_header.h"
#include "timed_mutex.h"
#include "write_until.h"

namespace OHOS::Host {

// All lines of the process pass through it: it stamps them, passes them to the capture, and writes them one after the
// other. Any thread may call any method. Lives from the load of the library, when the settings are read, to the end of
// the process.
//
// A program must not be held up by the reader of its log: a line waits at most 100 ms, for the lines before it and for
// the reader together, and is then lost. After that no line waits until one is written again; a report of how many were
// lost precedes it. This is why the sink is not spdlog, whose sinks wait as long as it takes.
class LogSink {
public:
    static LogSink& Instance();

    // The lowest level that the log or the capture wants.
    static const std::atomic<int>& LowestWanted()
    {
        return lowestWanted_;
    }

    // Writes `line`, which has room for the time stamp at its start and no end of line yet. Its message starts at
    // `messageStart`. Returns the number of bytes written, 0 for a line that is only captured, -1 for one that is lost.
    int Put(LogLevel level, unsigned int domain, const char* tag, std::string& line, size_t messageStart);
    // Counts a line that could not even be built.
    void CountLoss();
    void SetCapture(LogCapture capture);

    LogSink();
    LogSink(const LogSink&) = delete;
    LogSink& operator=(const LogSink&) = delete;

private:
    void ReadLevel();
    void OpenFile();
    void Show(LogLevel level, unsigned int domain, const char* tag, std::string_view message);
    // With `outputMutex_` held:
    void Stamp(char* stamp);
    // The line that reports the loss, after a line feed for a line that was cut off, which counts as lost.
    std::string LossReport(size_t lost);
    int Write(std::string& line, Deadline deadline);

    static std::atomic<int> lowestWanted_;

    // Set once.
    int level_ = LOG_LEVEL_MAX; // Above all levels: no line is written.
    int descriptor_ = STDERR_FILENO;
    bool isRegularFile_ = false; // Never so for standard error, which a program may replace.

    std::atomic<size_t> lost_{0}; // Lines lost and not yet reported.

    TimedMutex outputMutex_;   // Keeps lines whole that take more than one write. Guards:
    bool isBrokenOff_ = false; // The last line written lacks its end.
    std::time_t second_ = -1;  // The one that `stamp_` is for.
    std::array<char, TIME_STAMP_SIZE> stamp_{};

    std::mutex captureMutex_; // Taken after outputMutex_ where both are. Guards:
    LogCapture capture_;
};

} // namespace OHOS::Host

#endif // HOST_HILOG_LOG_SINK_H
