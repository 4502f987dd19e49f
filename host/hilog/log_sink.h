// Where HiLog's lines go.
#ifndef HOST_HILOG_LOG_SINK_H
#define HOST_HILOG_LOG_SINK_H

#include <atomic>
#include <mutex>
#include <string>

#include "capture.h"
#include "host/utils/thread_safety.h"
#include "log_output.h"

namespace OHOS::Host {

// All lines of the process pass through it: it shows them to the capture and writes them, one at a time. Any
// thread may call any method. It lives from the load of the library, when the settings are read, to the end.
//
// A program must not be held up by the reader of its log: a line waits at most 100 ms, for the lines before it and for
// the reader together, and is then lost. After that no line waits at all, until one is written again, preceded by a
// report of how many were lost. This is why the sink is not spdlog, whose sinks wait as long as it takes.
class LogSink {
public:
    static LogSink& Instance();

    // The lowest level that the log or the capture wants.
    static const std::atomic<int>& LowestWanted()
    {
        return lowestWanted_;
    }

    // `line` has room for the time stamp at its start and no end of line yet. Its message starts at `messageStart`.
    // Returns the number of bytes written, 0 for a line that is only captured, -1 for one that is lost.
    int Put(LogLevel level, unsigned int domain, const char* tag, std::string& line, size_t messageStart);
    // The same for a line that could not even be built.
    int Lose(LogLevel level);
    void SetCapture(LogCapture capture);

    LogSink();

private:
    // False when the wait was too long.
    bool LockOutput() ZELK_TRY_ACQUIRE(true, output_.mutex);
    // Stamps the line and gives it to the capture.
    void Show(LogLevel level, unsigned int domain, const char* tag, std::string& line, size_t messageStart);

    static std::atomic<int> lowestWanted_;

    const int level_; // The lowest one that is written.

    LogOutput output_;
    std::atomic<bool> isStuck_{false}; // A line waited for the reader in vain; none was written since.

    std::mutex captureMutex_; // Taken after the output's where both are.
    LogCapture capture_ ZELK_GUARDED_BY(captureMutex_);
};

} // namespace OHOS::Host

#endif // HOST_HILOG_LOG_SINK_H
