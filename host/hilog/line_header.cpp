#include "line_header.h"

#include <array>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <pthread.h>
#include <unistd.h>

namespace OHOS::Host {

namespace {

// Process and thread as a line has them: asking the system costs as much as formatting a line. Empty until asked, and
// again in the child of a fork.
thread_local std::array<char, 32> t_ids{};

[[maybe_unused]] const int FORGETS_IDS_AFTER_FORK = pthread_atfork(nullptr, nullptr, [] { t_ids = {}; });

const char* CurrentIds()
{
    if (t_ids[0] == '\0') {
        std::snprintf(t_ids.data(), t_ids.size(), "%5d %5d", getpid(), gettid());
    }
    return t_ids.data();
}

} // namespace

void AppendHeader(std::string& line, LogLevel level, unsigned int domain, const char* tag)
{
    line.append(TIME_STAMP_SIZE, ' ').append(1, ' ').append(CurrentIds());
    line.append(1, ' ').append(1, "DIWEF"[level - LOG_DEBUG]).append(" C");
    for (int shift = 16; shift >= 0; shift -= 4) {
        line += "0123456789abcdef"[domain >> shift & 0xF];
    }
    line.append(1, '/').append(tag).append(": ");
}

void Stamp(char* start)
{
    // Finding the local time costs more than the rest of a line, so it is done once a second.
    thread_local std::time_t t_second = -1;
    thread_local std::array<char, TIME_STAMP_SIZE> t_stamp{};
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    if (now.tv_sec != t_second) {
        std::tm local{};
        localtime_r(&now.tv_sec, &local);
        std::strftime(t_stamp.data(), t_stamp.size(), "%m-%d %H:%M:%S.", &local);
        t_second = now.tv_sec;
    }
    const long milliseconds = now.tv_nsec / 1'000'000;
    t_stamp[15] = static_cast<char>('0' + milliseconds / 100);
    t_stamp[16] = static_cast<char>('0' + milliseconds / 10 % 10);
    t_stamp[17] = static_cast<char>('0' + milliseconds % 10);
    std::memcpy(start, t_stamp.data(), t_stamp.size());
}

} // namespace OHOS::Host
