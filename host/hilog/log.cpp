#include "hilog/log.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <exception>
#include <string>

#include "format.h"
#include "line_header.h"
#include "log_sink.h"

namespace OHOS::Host {

namespace {

constexpr size_t USUAL_LINE_SIZE = 255;

int PrintLine(LogSink& sink, LogLevel level, unsigned int domain, const char* tag, const char* format,
              std::va_list args)
{
    std::string line;
    line.reserve(USUAL_LINE_SIZE);
    AppendHeader(line, level, domain, tag);
    const size_t messageStart = line.size();
    const bool isPrinted = AppendFormat(line, format, args);
    return isPrinted ? sink.Put(level, domain, tag, line, messageStart) : sink.Lose(level);
}

} // namespace

} // namespace OHOS::Host

int HiLogPrint(LogType /*type*/, LogLevel level, unsigned int domain, const char* tag, const char* fmt, ...)
{
    using namespace OHOS::Host;
    const LogLevel known = std::clamp(level, LOG_DEBUG, LOG_FATAL);
    if (known < LogSink::LowestWanted().load(std::memory_order_relaxed)) {
        return 0;
    }
    const int error = errno;
    LogSink& sink = LogSink::Instance();
    int written = 0;
    std::va_list args;
    va_start(args, fmt);
    try {
        written =
            PrintLine(sink, known, domain, tag == nullptr ? "(null)" : tag, fmt == nullptr ? "(null)" : fmt, args);
    } catch (const std::exception&) { // Out of memory, or the line is too long for a string.
        written = sink.Lose(known);
    }
    va_end(args);
    errno = error;
    return written;
}
