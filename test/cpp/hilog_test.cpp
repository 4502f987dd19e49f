// HiLog on a desktop: what a call prints, and which lines are written where. The settings are read when the library is
// loaded, so what depends on them runs in a process of its own: this program, started with the name of a scenario.
#include <algorithm>
#include <array>
#include <chrono>
#include <climits>
#include <ctime>
#include <fcntl.h>
#include <future>
#include <gtest/gtest.h>
#include <iomanip>
#include <iostream>
#include <poll.h>
#include <regex>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "hilog/capture.h"

namespace {

using namespace OHOS::Host;

constexpr unsigned int DOMAIN = 0xD002D19;

// What a call prints as its message. It leaves errno alone.
template <typename... Args>
std::string Printed(const std::string& format, Args... args)
{
    std::string message;
    SetLogCapture([&message](const LogRecord& record) { message = record.message; });
    errno = EINTR;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security" // The formats are the rows of a table.
    HiLogPrint(LOG_CORE, LOG_DEBUG, DOMAIN, "T", format.c_str(), args...);
#pragma GCC diagnostic pop
    EXPECT_EQ(errno, EINTR);
    SetLogCapture(nullptr);
    return message;
}

TEST(Format, PrintsByPrivacy)
{
    const char* const null = nullptr;
    const wchar_t* const wideNull = nullptr;
    int stored = 7;
    const std::string big(3'000'000, 'x');
    const std::pair<std::string, std::string> cases[] = {
        {Printed("100%% \n\t\x01\xff%{public}%"), "100% \n\t\x01\xff%"},
        {Printed("%{public}c1", '\0'), {"\0001", 2}},
        {Printed("%{public}s|%{private}s|%s|%{public}d", "a", "b", "c", 4), "a|<private>|<private>|4"},
        {Printed("%{private}*.*f %Lg %lld %m %{public}d", 5, 2, 1.5, 2.5L, 3LL, 6),
         "<private> <private> <private> <private> 6"},
        {Printed("%{public}s %{public}.2s %{public}8s %{public}.2ls|", null, null, null, wideNull),
         "(null) (null)   (null) (null)|"},
        {Printed("%{public}uz %{public}zu", 1U, size_t{2}), "1z 2"},
        {Printed("%{public}s%{public}1s", big.c_str(), big.c_str()), big + big},
        {Printed("a%{public}nb%nc%{public}d", &stored, &stored, 1), "ab<private>c1"},
        {Printed("%{public}d %{public}1$d %{foo}d %y %{public}Q %lm", 1), "1 %{public}1$d %{foo}d %y %{public}Q %lm"},
        {Printed("%{public}99999999999d %{public}lc %5%{public}m", 1, wint_t{0x110000}),
         "%{public}99999999999d %{public}lc %5Interrupted system call"},
        {Printed("end %{public}"), "end %{public}"},
        {Printed("end %-08.3l"), "end %-08.3l"},
    };
    for (const auto& [printed, expected] : cases) {
        EXPECT_EQ(printed, expected);
    }
    EXPECT_EQ(stored, 7);
}

template <typename... Args>
void ExpectAsPrintf(const std::string& format, Args... args)
{
    std::array<char, 2000> expected{};
    errno = EINTR;
    std::snprintf(expected.data(), expected.size(), format.c_str(), args...);
    EXPECT_EQ(Printed(std::regex_replace(format, std::regex("%"), "%{public}"), args...), expected.data());
}

TEST(Format, PrintsAsPrintfDoes)
{
    ExpectAsPrintf("%hhd %hhi %hd %ho %+d %#o %08X %x %u %c", 300, -1, 70000, 70000, 7, 8, 0xBEEF, -1, -1, 'c');
    ExpectAsPrintf("%ld %lu %zu %zX %td %ti", LONG_MIN, -1L, -1L, LONG_MAX, -5L, LONG_MIN);
    ExpectAsPrintf("%lld %llo %jd %ju %Ld", LLONG_MIN, -1LL, -1LL, -1LL, LLONG_MAX);
    ExpectAsPrintf("%f %.3e % G %a %lf %lE", 1.5, 1e300, 1.0 / 3, 0.1, -2.5, 1e-9);
    ExpectAsPrintf("%Lf %.2Lg %LA", 2.5L, 1e300L, 0.1L);
    ExpectAsPrintf("%lc %C %ls %.2S|", wint_t{'x'}, wint_t{'y'}, L"wide", L"wide");
    ExpectAsPrintf("%8s|%-8.2s|%.*s|%.*s|%.s|", "text", "text", 3, "text", -1, "text", "text");
    ExpectAsPrintf("%*d|%*d|%-+*d|%.*d|% '.3d|%m|%30m|", 4, 1, -4, 2, 4, 3, -1, 4, 5);
    ExpectAsPrintf("%p %p", static_cast<const void*>("p"), static_cast<const void*>(nullptr));
    ExpectAsPrintf("%127d|%128d|%.500f|%300s", 1, 2, 3.0, "text");
}

void Print(const std::string& message)
{
    HiLogPrint(LOG_CORE, LOG_ERROR, 1, "T", "%{public}s", message.c_str());
}

void PrintLevels()
{
    errno = EINTR;
    for (int level = LOG_LEVEL_MIN; level <= LOG_LEVEL_MAX; ++level) {
        HiLogPrint(LOG_CORE, static_cast<LogLevel>(level), DOMAIN, "T", "%{public}d %{public}m", level);
    }
}

void PrintAwkward()
{
    HiLogPrint(LOG_CORE, LOG_WARN, 0xFFF0000A, "T\nU", "\na\n\nb\n");
    HiLogPrint(LOG_CORE, LOG_WARN, 0, nullptr, nullptr);
}

// A capture sees lines of all levels while it lasts, and does not keep them from where they go.
void PrintCaptured()
{
    Print("before");
    SetLogCapture([](const LogRecord& record) {
        std::cout << record.level << " " << record.domain << " " << record.tag << ": " << record.message << std::endl;
    });
    std::cout << HiLogPrint(LOG_APP, LOG_DEBUG, 19, "A\nB", "one\n") << std::endl;
    std::cout << HiLogPrint(LOG_CORE, LOG_ERROR, DOMAIN, "T", "two") << std::endl;
    SetLogCapture(nullptr);
    HiLogPrint(LOG_CORE, LOG_DEBUG, DOMAIN, "T", "three");
    Print("four");
}

void PrintTimes()
{
    for (int line = 0; line < 2; ++line) {
        const std::time_t now = std::time(nullptr);
        const std::time_t next = now + 1; // Either may be the line's.
        std::ostringstream stamps;
        stamps << std::put_time(std::localtime(&now), "%m-%d %T ");
        stamps << std::put_time(std::localtime(&next), "%m-%d %T ");
        Print(stamps.str());
        usleep(line == 0 ? 1'100'000 : 0);
    }
}

void PrintIds()
{
    Print(std::to_string(getpid()) + " " + std::to_string(gettid()));
}

void PrintInFork()
{
    PrintIds();
    if (fork() == 0) {
        PrintIds();
    } else {
        wait(nullptr);
    }
}

// Lines of several threads, while captures and children come and go. A child must be able to log although another
// thread of its parent was writing.
void PrintInThreads()
{
    std::array<std::future<void>, 4> writers;
    for (size_t i = 0; i < writers.size(); ++i) {
        writers[i] = std::async(std::launch::async, [letter = "abcd"[i]] {
            for (size_t line = 1; line <= 50; ++line) {
                Print(std::string(line * 2000, letter));
            }
        });
    }
    for (int count = 0; count < 50; ++count) {
        SetLogCapture([](const LogRecord&) {});
        SetLogCapture(nullptr);
        if (fork() == 0) {
            alarm(10);
            dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
            if (HiLogPrint(LOG_CORE, LOG_ERROR, 1, "T", "child") < 0) {
                _exit(1);
            }
            SetLogCapture(nullptr);
            execl("/bin/true", "true", nullptr); // ThreadSanitizer would miss the other threads at an exit.
        }
        int status = 0;
        if (wait(&status) < 0 || status != 0) {
            std::cout << "a child cannot log";
        }
    }
    for (auto& writer : writers) {
        writer.wait();
    }
    usleep(300'000);
    Print("a"); // Reports what was lost, if anything.
}

// What can be read from a descriptor at once.
std::string ReadAll(int descriptor)
{
    std::string text;
    std::array<char, 4096> buffer;
    pollfd input{descriptor, POLLIN, 0};
    while (poll(&input, 1, 0) > 0) {
        const ssize_t size = read(descriptor, buffer.data(), buffer.size());
        if (size <= 0) {
            break;
        }
        text.append(buffer.data(), static_cast<size_t>(size));
    }
    return text;
}

// What four lines of four threads take altogether: "nothing" or "a wait" of about a tenth of a second.
std::string TimeOfFour(const std::string& message)
{
    const auto start = std::chrono::steady_clock::now();
    std::array<std::future<void>, 4> writers;
    for (auto& writer : writers) {
        writer = std::async(std::launch::async, Print, message);
    }
    for (auto& writer : writers) {
        writer.wait();
    }
    const double took = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return took < 0.08 ? "nothing" : took < 0.25 ? "a wait" : std::to_string(took);
}

// Logs while nobody reads from `reader`, then reads, and logs on.
void PrintUnread(int reader)
{
    const std::string message(10'000, 'x'); // Above what a pipe takes as a whole.
    int captured = 0;
    SetLogCapture([&captured](const LogRecord&) { ++captured; });
    int written = 0;
    while (HiLogPrint(LOG_CORE, LOG_ERROR, 1, "T", "%{public}s", message.c_str()) > 0) {
        ++written;
    }
    std::cout << TimeOfFour(message) << ", " << captured - written << " lost, ";
    const std::string text = ReadAll(reader);
    std::cout << std::count(text.begin(), text.end(), '\n') - written << " whole, ";
    Print("after");
    const std::string after = ReadAll(reader);
    for (int line = 0; line < written; ++line) {
        Print(message);
    }
    std::cout << TimeOfFour(message) << ", " << ((fcntl(reader, F_GETFL) | fcntl(STDERR_FILENO, F_GETFL)) & O_NONBLOCK)
              << "\n"
              << after;
    ReadAll(reader);
}

constexpr int READER = 3; // The shell opened it.

const std::map<std::string, void (*)()> SCENARIOS = {
    {"levels", PrintLevels},
    {"awkward", PrintAwkward},
    {"captured", PrintCaptured},
    {"times", PrintTimes},
    {"fork", PrintInFork},
    {"threads", PrintInThreads},
    {"nobody",
     [] {
         std::array<int, 2> ends{};
         if (pipe(ends.data()) == 0 && close(ends[0]) == 0 && dup2(ends[1], STDERR_FILENO) >= 0) {
             std::cout << HiLogPrint(LOG_CORE, LOG_ERROR, DOMAIN, "T", "lost") << " "
                       << HiLogPrint(LOG_CORE, LOG_DEBUG, DOMAIN, "T", "below");
         }
     }},
    {"unread",
     [] {
         PrintUnread(READER);
     }},
    {"unread-by-another-user",
     [] {
         const uid_t user = geteuid();
         if (user != 0 || seteuid(65534) == 0) {
             PrintUnread(READER);
         }
         if (seteuid(user) != 0) { // The leak detector needs the rights that there were.
             std::abort();
         }
     }},
    {"unread-socket",
     [] {
         std::array<int, 2> ends{};
         if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) == 0 && dup2(ends[0], STDERR_FILENO) >= 0) {
             PrintUnread(ends[1]);
         }
     }},
};

// What a command of the shell prints. $P is this program and $F the name of a file that is not there yet.
std::string Output(const std::string& command)
{
    const std::string pid = std::to_string(getpid());
    const std::string prefix = "P=/proc/" + pid + "/exe F=" + testing::TempDir() + "hilog_test." + pid + "; ";
    FILE* pipe = popen((prefix + command + "; rm -f $F").c_str(), "r");
    std::string output;
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) {
        output += static_cast<char>(c);
    }
    pclose(pipe);
    return output;
}

void ExpectOutputs(const std::vector<std::pair<std::string, std::string>>& cases)
{
    for (const auto& [command, expected] : cases) {
        const std::string output = Output(command);
        EXPECT_TRUE(std::regex_match(output, std::regex(expected))) << command << "\n" << output;
    }
}

TEST(Line, IsWrittenFromTheLevelOn)
{
    const auto lines = [](const std::string& levels) {
        const char* const line = "[-0-9:. ]{30} $1 C02d19/T: $2 Interrupted system call\n";
        return std::regex_replace(levels, std::regex("(.)(.) "), line);
    };
    const std::string report = "zelklogservice: HILOG_LEVEL=\"[^\"]*\": [^\n]*\n";
    ExpectOutputs({
        {"$P levels 2>&1", ""},
        {"HILOG_LEVEL= HILOG_FILE= $P levels 2>&1", ""},
        {"HILOG_LEVEL=X $P levels 2>&1", ""},
        {"HILOG_LEVEL=F $P levels 2>&1", lines("F7 F8 ")},
        {"HILOG_LEVEL=E $P levels 2>&1", lines("E6 F7 F8 ")},
        {"HILOG_LEVEL=W $P levels 2>&1", lines("W5 E6 F7 F8 ")},
        {"HILOG_LEVEL=I $P levels 2>&1", lines("I4 W5 E6 F7 F8 ")},
        {"HILOG_LEVEL=D $P levels 2>&1", lines("D0 D1 D2 D3 I4 W5 E6 F7 F8 ")},
        {"HILOG_LEVEL=e $P levels 2>&1", report},
        {"HILOG_LEVEL=DI $P levels 2>&1", report},
        {"HILOG_LEVEL=F HILOG_FILE=/no/where $P levels 2>&1",
         "zelklogservice: HILOG_FILE=\"/no/where\": .*\n" + lines("F7 F8 ")},
    });
}

TEST(Line, HasTimeProcessThreadAndTag)
{
    const std::string start = R"(\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} (?= *\d+ )[ \d]{5,} (?= *\d+ )[ \d]{5,} W )";
    ExpectOutputs({
        {"echo before >$F; HILOG_LEVEL=W HILOG_FILE=$F $P awkward 2>&1; cat $F",
         "before\n" + start + R"(C0000a/T\\nU: \\na\\n\\nb\\n\n)" + start + R"(C00000/\(null\): \(null\)\n)"},
        {"HILOG_LEVEL=E TZ=East-5:30 $P times 2>&1", R"((.{14})\..*T: .*\1 .*\n(.{14})\..*T: .*\2 .*\n)"},
        {"HILOG_LEVEL=E $P fork 2>&1",
         R"(.{18} +(\d+) +(\d+) E C00001/T: \1 \2\n.{18} +(\d+) +(\d+) E C00001/T: \3 \4\n)"},
    });
}

TEST(Line, IsCaptured)
{
    const std::string captured = "3 19 A\nB: one\n\n0\n6 218115353 T: two\n";
    ExpectOutputs({
        {"$P captured 2>&1", captured + "0\n"},
        {"HILOG_LEVEL=E $P captured 2>/dev/null", captured + "\\d+\n"},
        {"HILOG_LEVEL=E $P captured 2>&1 >/dev/null", ".*T: before\n.* E C02d19/T: two\n.*T: four\n"},
    });
}

TEST(Line, IsLostWhenNobodyReads)
{
    const std::string fifo = "mkfifo $F; exec 3<>$F; HILOG_LEVEL=E ";
    const std::string after = ".* W C00000/HILOG: 5 lines were lost\n.*T: after\n";
    const std::string broken = "nothing, 5 lost, 0 whole, a wait, 0\n\n" + after;
    ExpectOutputs({
        {"HILOG_LEVEL=I $P nobody", "-1 0"},
        {fifo + "HILOG_FILE=$F $P unread", broken},
        {fifo + "$P unread 2>$F", broken},
        {fifo + "sh -c 'chmod 0 $1; $0 unread-by-another-user' $P $F 2>$F", broken},
        {"HILOG_LEVEL=E $P unread-socket", "nothing, 5 lost, 0 whole, a wait, 0\n\n?" + after},
    });
}

// Lines above what a pipe takes at once. On a busy machine some may be lost, but then the log says so.
TEST(Line, StaysWhole)
{
    std::multiset<std::string> expected;
    for (size_t line = 0; line < 200; ++line) {
        expected.emplace((line / 4 + 1) * 2000, "abcd"[line % 4]);
    }
    std::istringstream output(Output("HILOG_LEVEL=E $P threads 2>&1 | cat"));
    size_t lost = 0;
    for (std::string line; std::getline(output, line);) {
        const std::string message = line.substr(std::min(line.find(": ") + 2, line.size()));
        const auto found = expected.find(message);
        if (found != expected.end()) {
            expected.erase(found);
        } else if (line.find("HILOG: ") != std::string::npos) {
            lost += std::stoul(message);
        } else { // The start of one that was lost.
            EXPECT_EQ(message.find_first_not_of(message.front()), std::string::npos);
        }
    }
    EXPECT_EQ(lost, expected.size());
    EXPECT_LT(lost, 50U);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && SCENARIOS.count(argv[1]) > 0) {
        alarm(60);
        SCENARIOS.at(argv[1])();
        return 0;
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
