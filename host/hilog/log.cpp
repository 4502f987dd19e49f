#include "hilog/log.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <new>
#include <string>

#include "format.h"
#include "line_header.h"
#include "log_sink.h"

namespace OHOS::Host {

namespace {

constexpr size_t USUAL_LINE_SIZE = 255;

int PrintLine(LogLevel level, unsigned int domain, const char* tag, const char* format, std::va_list args)
{
    std::string line;
    line.reserve(USUAL_LINE_SIZE);
    AppendHeader(line, level, domain, tag);
    const size_t messageStart = line.size();
    AppendFormat(line, format, args);
    return LogSink::Instance().Put(level, domain, tag, line, messageStart);
}

} // namespace

} // namespace OHOS::Host

int HiLogPrint(LogType /*type*/, LogLevel level, unsigned int domain, const char* tag, const char* fmt, ...)
{
    using OHOS::Host::LogSink;
    const LogLevel known = std::clamp(level, LOG_DEBUG, LOG_FATAL);
    if (known < LogSink::LowestWanted().load(std::memory_order_relaxed)) {
        return 0;
    }
    const int error = errno;
    std::va_list args;
    va_start(args, fmt);
    int written = -1;
    try {
        written = OHOS::Host::PrintLine(known, domain, tag == nullptr ? "(null)" : tag, fmt == nullptr ? "(null)" : fmt,
                                        args);
    } catch (const std::bad_alloc&) {
        // A caller in C could not catch it.
        LogSink::Instance().CountLoss();
    }
    va_end(args);
    errno = error;
    return written;
}
