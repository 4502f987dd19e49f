#include "line_header.h"

#include <array>
#include <charconv>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace OHOS::Host {

namespace {

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
        line += "0123456789abcdef"[domain >> (4 * digit) & 0xF];
    }
}

} // namespace

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

} // namespace OHOS::Host
