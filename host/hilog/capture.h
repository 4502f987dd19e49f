// Desktop only: lets a test or an embedding program receive log lines as records.
#ifndef HOST_HILOG_CAPTURE_H
#define HOST_HILOG_CAPTURE_H

#include <functional>
#include <string>

#include "hilog/log.h"

namespace OHOS::Host {

struct LogRecord {
    LogLevel level;
    unsigned int domain;
    std::string tag;
    std::string message; // Arguments filled in, line feeds as they were passed.
    std::string header;  // What a written line has before the message.
};

using LogCapture = std::function<void(const LogRecord&)>;

// From now on `capture` receives every line, whatever the level in force; lines are still written as usual. An empty
// function ends the capture. `capture` is called on the logging thread, one call at a time, in the order in which lines
// are written; it must neither log nor fork. When this returns, the previous capture is no longer running.
__attribute__((visibility("default"))) void SetLogCapture(LogCapture capture);

} // namespace OHOS::Host

#endif // HOST_HILOG_CAPTURE_H
