// What a log line begins with.
#ifndef HOST_HILOG_LINE_HEADER_H
#define HOST_HILOG_LINE_HEADER_H

#include <cstddef>
#include <string>

#include "hilog/log.h"

namespace OHOS::Host {

// The bytes at the start of a line for "MM-DD hh:mm:ss.mmm".
constexpr size_t TIME_STAMP_SIZE = 18;

// Appends what comes before the message, with room for the time. `level` is one of LOG_DEBUG to LOG_FATAL.
void AppendHeader(std::string& line, LogLevel level, unsigned int domain, const char* tag);

// Fills that room with the local time now.
void Stamp(char* start);

} // namespace OHOS::Host

#endif // HOST_HILOG_LINE_HEADER_H
