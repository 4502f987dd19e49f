#include "hilog/log.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdarg>
#include <cstring>
#include <new>
#include <pthread.h>
#include <string>
#include <sys/syscall.h>
#include <unistd.h>

#include "format.h"
#include "hilog/capture.h"
#include "log_sink.h"

namespace OHOS::Host {

namespace {

constexpr size_t USUAL_LINE_SIZE = 255;
constexpr unsigned int DOMAIN_MASK = 0xFFFFF;
constexpr int DOMAIN_DIGITS = 5;
constexpr size_t ID_WIDTH = 5;

struct Ids {
    pid_t process;
    pid_t thread;
};

// Asking the system costs as much as formatting a line. Zero until asked, and again in the child of a fork.
thread_local Ids t_ids{};

void ForgetIds()
{
    t_ids = {};
}

[[maybe_unused]] const int FORGETS_IDS_AFTER_FORK = pthread_atfork(nullptr, nullptr, ForgetIds);

const Ids& CurrentIds()
{
    if (t_ids.thread == 0) {
        t_ids = {getpid(), static_cast<pid_t>(syscall(SYS_gettid))};
    }
    return t_ids;
}

void AppendId(std::string& line, pid_t id)
{
    std::array<char, 16> digits;
    const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), id).ptr;
    const auto size = static_cast<size_t>(end - digits.data());
    line.append(size < ID_WIDTH ? ID_WIDTH - size : 0, ' ').append(digits.data(), size);
}

void AppendDomain(std::string& line, unsigned int domain)
{
    for (int digit = DOMAIN_DIGITS - 1; digit >= 0; --digit) {
        line += "0123456789abcdef"[(domain & DOMAIN_MASK) >> (4 * digit) & 0xF];
    }
}

// What stands before the message, with room for the time.
void AppendHeader(std::string& line, LogLevel level, unsigned int domain, const char* tag)
{
    const Ids& ids = CurrentIds();
    line.append(TIME_STAMP_SIZE, ' ').append(1, ' ');
    AppendId(line, ids.process);
    line += ' ';
    AppendId(line, ids.thread);
    line.append(1, ' ').append(1, "DIWEF"[level - LOG_DEBUG]).append(" C");
    AppendDomain(line, domain);
    line.append(1, '/').append(tag).append(": ");
}

int PrintLine(LogLevel level, unsigned int domain, const char* tag, const char* format, std::va_list args)
{
    const int error = errno;
    LogSink& sink = LogSink::Instance();
    sink.Prepare();
    int written = 0;
    if (level >= LogSink::LowestWanted().load(std::memory_order_relaxed)) {
        std::string line;
        line.reserve(USUAL_LINE_SIZE);
        AppendHeader(line, level, domain, tag);
        const size_t messageStart = line.size();
        errno = error;
        AppendFormat(line, format, args);
        written = sink.Put(level, domain, tag, line, messageStart);
    }
    errno = error;
    return written;
}

} // namespace

void SetLogCapture(LogCapture capture)
{
    LogSink::Instance().SetCapture(std::move(capture));
}

} // namespace OHOS::Host

int HiLogPrint(LogType /*type*/, LogLevel level, unsigned int domain, const char* tag, const char* format, ...)
{
    const LogLevel known = std::clamp(level, LOG_DEBUG, LOG_FATAL);
    if (known < OHOS::Host::LogSink::LowestWanted().load(std::memory_order_relaxed)) {
        return 0;
    }
    std::va_list args;
    va_start(args, format);
    int written = -1;
    try {
        written = OHOS::Host::PrintLine(known, domain, tag == nullptr ? "(null)" : tag,
                                        format == nullptr ? "(null)" : format, args);
    } catch (const std::bad_alloc&) {
        // A caller in C could not catch it. The line is lost, as its return value says.
    }
    va_end(args);
    return written;
}
