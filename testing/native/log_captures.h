// All captures of the process's log lines, which share the log's one slot for a capture.
#ifndef TESTING_NATIVE_LOG_CAPTURES_H
#define TESTING_NATIVE_LOG_CAPTURES_H

#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

#include "host/hilog/capture.h"
#include "host/utils/thread_safety.h"

namespace OHOS::Host {

// Any thread may call any method.
class __attribute__((visibility("default"))) LogCaptures {
public:
    // The lines of one capture that have not been taken yet. A capture ends with its owner at the latest.
    struct Capture {
        const void* owner;
        std::vector<LogRecord> lines;
    };

    static LogCaptures& Instance();

    // Every line from now on is kept until it is taken. Lines are still written as before.
    std::shared_ptr<Capture> Start(const void* owner);
    // No further line is kept.
    void Stop(const std::shared_ptr<Capture>& capture);
    void StopAllOf(const void* owner);

    std::vector<LogRecord> Take(Capture& capture);

private:
    void Keep(const LogRecord& record);
    // Fills or empties the log's slot, without the lock, because the log waits there for the line being kept.
    void UpdateSlot() ZELK_REQUIRES(mutex_);

    std::mutex mutex_; // Guards the lines, too.
    std::condition_variable_any updated_;
    bool isUpdating_ ZELK_GUARDED_BY(mutex_) = false; // A thread is changing the slot.
    std::vector<std::shared_ptr<Capture>> captures_ ZELK_GUARDED_BY(mutex_);
};

} // namespace OHOS::Host

#endif // TESTING_NATIVE_LOG_CAPTURES_H
