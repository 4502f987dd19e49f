// Everybody who listens to the process's log lines through the one slot that the log has for it.
#ifndef HOST_TESTING_LOG_CAPTURES_H
#define HOST_TESTING_LOG_CAPTURES_H

#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

#include "hilog/capture.h"

namespace OHOS::Host {

// Any thread may call any method.
class LogCaptures {
public:
    // One listener's lines that it has not taken yet; its owner ends it at the latest.
    struct Capture {
        const void* owner;
        std::vector<LogRecord> lines;
    };

    static LogCaptures& Instance();

    // Every line from now on is kept until it is taken. Lines still go where they went.
    std::shared_ptr<Capture> Start(const void* owner);
    // No further line is kept.
    void Stop(const std::shared_ptr<Capture>& capture);
    void StopAllOf(const void* owner);

    std::vector<LogRecord> Take(Capture& capture);

private:
    void Keep(const LogRecord& record);
    // Fills or empties the log's slot, without the lock: the log waits there for the line that is just being kept.
    void UpdateSlot(std::unique_lock<std::mutex>& lock);

    std::mutex mutex_; // Guards everything below and the lines.
    std::condition_variable updated_;
    bool isUpdating_ = false; // Somebody is at the slot.
    std::vector<std::shared_ptr<Capture>> captures_;
};

} // namespace OHOS::Host

#endif // HOST_TESTING_LOG_CAPTURES_H
