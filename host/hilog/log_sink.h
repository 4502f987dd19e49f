// Where HiLog's lines go.
#ifndef HOST_HILOG_LOG_SINK_H
#define HOST_HILOG_LOG_SINK_H

#include <atomic>
#include <mutex>
#include <string>

#include "capture.h"
#include "log_output.h"
#include "timed_mutex.h"

namespace OHOS::Host {

// All lines of the process pass through it: it shows them to the capture and writes them, one after the other. Any
// thread may call any method. It lives from the load of the library, when the settings are read, to the end.
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

    // `line` has room for the time stamp at its start and no end of line yet. Its message starts at `messageStart`.
    // Returns the number of bytes written, 0 for a line that is only captured, -1 for one that is lost.
    int Put(LogLevel level, unsigned int domain, const char* tag, std::string& line, size_t messageStart);
    // The same for a line that could not even be built.
    int Lose(LogLevel level);
    void SetCapture(LogCapture capture);

    LogSink();

private:
    // Not locked when the wait was too long.
    std::unique_lock<TimedMutex> LockOutput();
    void Show(LogLevel level, unsigned int domain, const char* tag, const std::string& line, size_t messageStart);

    static std::atomic<int> lowestWanted_;

    const int level_; // The lowest one that is written.

    TimedMutex outputMutex_;
    LogOutput output_;                 // Writes with the lock.
    std::atomic<bool> isStuck_{false}; // A line waited for the reader in vain, and none was written since.

    std::mutex captureMutex_; // Taken after outputMutex_ where both are. Guards:
    LogCapture capture_;
};

} // namespace OHOS::Host

#endif // HOST_HILOG_LOG_SINK_H
