// Desktop only: lets a test or an embedding program see log lines as records.
#ifndef HOST_DESKTOP_CAPTURE_H
#define HOST_DESKTOP_CAPTURE_H

#include <functional>
#include <string>

#include "hilog/log.h"

namespace OHOS::Host {

struct LogRecord {
    LogLevel level;
    unsigned int domain;
    std::string tag;
    std::string message; // Arguments filled in, line feeds as they were passed.
};

using LogCapture = std::function<void(const LogRecord&)>;

// From now on `capture` sees every line, whatever the level in force, and the lines are still written as usual when
// `andWrite` is set. An empty function ends the capture. `capture` is called on the logging thread, one call at a time;
// it must neither log nor fork. When the call returns, the previous capture is no longer running.
HOST_HILOG_EXPORT void SetLogCapture(LogCapture capture, bool andWrite = false);

} // namespace OHOS::Host

#endif // HOST_DESKTOP_CAPTURE_H
