// The file or standard error at the end of the log.
#ifndef HOST_HILOG_LOG_OUTPUT_H
#define HOST_HILOG_LOG_OUTPUT_H

#include <atomic>
#include <cstddef>
#include <string>
#include <unistd.h>

#include "host/utils/thread_safety.h"
#include "host/utils/write_until.h"
#include "timed_mutex.h"

namespace OHOS::Host {

// Writes lines, and reports how many were lost before.
class LogOutput {
public:
    TimedMutex mutex; // Held while a line is written.

    // Opens the file that HILOG_FILE names.
    LogOutput();

    // Writes `line`, which has no end of line yet, after the report of a loss if there was one, and waits for the
    // reader until `deadline`. Returns the number of the line's bytes, or -1 for a line that is lost.
    int Write(std::string& line, Deadline deadline) ZELK_REQUIRES(mutex);
    // Counts a line that is lost. Any thread may call it.
    void CountLoss()
    {
        ++lost_;
    }

private:
    // The line that reports the loss, after a line feed for a line that was broken off.
    std::string LossReport(size_t lost) ZELK_REQUIRES(mutex);

    int descriptor_ = STDERR_FILENO;
    bool isRegularFile_ = false;  // Always false for standard error, which a program may replace.
    std::atomic<size_t> lost_{0}; // Lines lost and not yet reported.
    // The last line written lacks its end.
    bool isBrokenOff_ ZELK_GUARDED_BY(mutex) = false;
};

} // namespace OHOS::Host

#endif // HOST_HILOG_LOG_OUTPUT_H
