// HiLog on a desktop: what a call prints, and which lines are written where. The settings are read when the library is
// loaded, so what depends on them runs in a process of its own: this program, started with the name of a scenario.
#include <algorithm>
#include <array>
#include <chrono>
#include <climits>
#include <fcntl.h>
#include <future>
#include <gtest/gtest.h>
#include <iostream>
#include <regex>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "hilog/capture.h"
#include "in_threads.h"

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

TEST(Format, PrintsAsPrintfDoesAndHidesWhatIsPrivate)
{
    const char* const null = nullptr;
    const wchar_t* const wideNull = nullptr;
    const std::string big(3'000'000, 'x');
    const std::string spaces(300, ' ');
    int stored = 7;
    const std::pair<std::string, std::string> cases[] = {
        {Printed("%{public}hhd %{public}ho %{public}+d %{public}#X %{public}u", 300, 70000, 7, 0xBEEF, -1),
         "44 10560 +7 0XBEEF 4294967295"},
        {Printed("%{public}ld %{public}zu %{public}tX %{public}lld %{public}ji", LONG_MIN, -1L, -1L, LLONG_MIN, -1LL),
         "-9223372036854775808 18446744073709551615 FFFFFFFFFFFFFFFF -9223372036854775808 -1"},
        {Printed("%{public}b %{public}#hhB %{public}qd %{public}Zu %{public}Id", 5, 6, -1LL, 2L, 8),
         "101 0B110 -1 2 8"},
        {Printed("%{public}f %{public}.3e %{public}lG %{public}Lf", 1.5, 1e300, 1.0 / 3, 2.5L),
         "1.500000 1.000e+300 0.333333 2.500000"},
        {Printed("%{public}lc %{public}C %{public}ls %{public}.2S", wint_t{'x'}, wint_t{'y'}, L"wide", L"wide"),
         "x y wide wi"},
        {Printed("%{public}8s|%{public}-8.2s|%{public}.*s|%{public}.*s|", "text", "text", 3, "text", -1, "text"),
         "    text|te      |tex|text|"},
        {Printed("%{public}*d|%{public}*d|%{public}-+*d|%{public}m", 4, 1, -4, 2, 4, 3),
         "   1|2   |+3  |Interrupted system call"},
        {Printed("%{public}p %{public}127d|%{public}128d|%{public}300s", null, 1, 2, "text"),
         "(nil) " + spaces.substr(0, 126) + "1|" + spaces.substr(0, 127) + "2|" + spaces.substr(0, 296) + "text"},
        {Printed("100%% \n\t\x01\xff%{public}%"), "100% \n\t\x01\xff%"},
        {Printed("%{public}s|%{private}s|%s|%{public}d", "a", "b", "c", 4), "a|<private>|<private>|4"},
        {Printed("%{private}*.*f %Lg %lld %m %{public}d", 5, 2, 1.5, 2.5L, 3LL, 6),
         "<private> <private> <private> <private> 6"},
        {Printed("%{public}s %{public}.2s %{public}8s %{public}.1ls|", null, null, null, wideNull),
         "(null) (null)   (null) (null)|"},
        {Printed("%{public}s%{public}1s", big.c_str(), big.c_str()), big + big},
        {Printed("%{public}uz a%{public}nb%nc", 1U, &stored, &stored), "1z ab<private>c"},
        {Printed("%{public}d %{public}1$d %{foo}d %y %lm %{public}", 1), "1 %{public}1$d %{foo}d %y %lm %{public}"},
        {Printed("%{public}99999999999d %{public}lc|%-08.3l", 1, wint_t{0x110000}),
         "%{public}99999999999d %{public}lc|%-08.3l"},
    };
    for (const auto& [printed, expected] : cases) {
        EXPECT_EQ(printed, expected);
    }
    EXPECT_EQ(stored, 7);
}

void Print(const std::string& message)
{
    HiLogPrint(LOG_CORE, LOG_ERROR, 1, "T", "%{public}s", message.c_str());
}

void PrintIds()
{
    const auto print = [] {
        Print(std::to_string(getpid()) + " " + std::to_string(gettid()));
    };
    print();
    std::async(std::launch::async, print).wait();
    usleep(1'100'000); // Another second begins.
    if (fork() == 0) {
        print();
    } else {
        wait(nullptr);
    }
}

constexpr size_t LONG = 100'000; // Above what a pipe takes at once.

// Lines of several threads, while captures and children come and go. A child must be able to log although another
// thread of its parent was writing.
void PrintInThreads()
{
    ZelkTest::InThreads([message = std::string(LONG, 'x')](size_t) {
        for (int line = 0; line < 50; ++line) {
            Print(message);
            SetLogCapture([](const LogRecord&) {});
            SetLogCapture(nullptr);
            if (line % 5 == 0 && fork() == 0) {
                alarm(10);
                dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
                // ThreadSanitizer would miss the other threads at an exit.
                execl(HiLogPrint(LOG_CORE, LOG_ERROR, 1, "T", "child") > 0 ? "/bin/true" : "/bin/false", "", nullptr);
            }
        }
    });
    for (int status = 0; wait(&status) > 0;) {
        std::cout << (status == 0 ? "" : "a child cannot log");
    }
    usleep(300'000);
    Print("x"); // Reports what was lost, if anything.
}

constexpr int READER = 3; // The other end of standard error or HILOG_FILE.

// What can be read at once.
std::string ReadAll()
{
    int size = 0;
    ioctl(READER, FIONREAD, &size);
    std::string text(static_cast<size_t>(size), '\0');
    return read(READER, text.data(), text.size()) == size ? text : "not read";
}

// What four lines of four threads take altogether: "nothing" or "a wait" of about a tenth of a second.
std::string TimeOfFour(const std::string& message)
{
    const auto start = std::chrono::steady_clock::now();
    ZelkTest::InThreads([&message](size_t) { Print(message); });
    const double took = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return took < 0.08 ? "nothing" : took < 0.25 ? "a wait" : std::to_string(took);
}

// Logs while nobody reads, then reads, and logs on.
void PrintUnread()
{
    const std::string message(10'000, 'x'); // Above what a pipe takes as a whole.
    const int descriptor = dup(READER);
    int captured = 0;
    SetLogCapture([&captured](const LogRecord&) { ++captured; });
    int written = 0;
    while (HiLogPrint(LOG_CORE, LOG_ERROR, 1, "T", "%{public}s", message.c_str()) > 0) {
        ++written;
    }
    std::cout << TimeOfFour(message) << ", " << captured - written << " lost, ";
    const std::string text = ReadAll();
    std::cout << std::count(text.begin(), text.end(), '\n') - written << " whole, ";
    Print("after");
    const std::string after = ReadAll();
    for (int line = 0; line < written; ++line) {
        Print(message);
    }
    std::cout << TimeOfFour(message) << ", " << ((fcntl(READER, F_GETFL) | fcntl(STDERR_FILENO, F_GETFL)) & O_NONBLOCK)
              << ", " << dup(READER) - descriptor << "\n"
              << after;
    ReadAll();
}

const std::map<std::string, void (*)()> SCENARIOS = {
    {"levels",
     [] {
         // The capture changes nothing about what is written.
         SetLogCapture([](const LogRecord&) {});
         errno = EINTR;
         for (int level = LOG_LEVEL_MIN; level <= LOG_LEVEL_MAX; ++level) {
             HiLogPrint(LOG_CORE, static_cast<LogLevel>(level), DOMAIN, "T", "%{public}d %{public}m", level);
         }
     }},
    {"awkward",
     [] {
         HiLogPrint(LOG_CORE, LOG_WARN, 0xFFF0000A, "T\nU", "\na\n\nb\n");
         HiLogPrint(LOG_CORE, LOG_WARN, 0, nullptr, nullptr);
     }},
    {"ids", PrintIds},
    {"threads", PrintInThreads},
    {"nobody",
     [] {
         std::cout << HiLogPrint(LOG_CORE, LOG_ERROR, DOMAIN, "T", "lost") << " "
                   << HiLogPrint(LOG_CORE, LOG_DEBUG, DOMAIN, "T", "below");
     }},
    {"unread", PrintUnread},
    {"unread-by-another-user",
     [] {
         const uid_t user = geteuid();
         if (user != 0 || seteuid(65534) == 0) {
             PrintUnread();
         }
         if (seteuid(user) != 0) { // The leak detector needs the rights that there were.
             std::abort();
         }
     }},
    {"unread-socket",
     [] {
         std::array<int, 2> ends{};
         if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) == 0 && dup2(ends[0], STDERR_FILENO) >= 0 &&
             dup2(ends[1], READER) >= 0) {
             PrintUnread();
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

// Where the output depends on time, a busy machine may need more than one of the `tries`.
void ExpectOutputs(const std::vector<std::pair<std::string, std::string>>& cases, int tries = 1)
{
    for (const auto& [command, expected] : cases) {
        std::string output;
        bool matches = false;
        for (int i = 0; i < tries && !matches; ++i) {
            output = Output(command);
            matches = std::regex_match(output, std::regex(expected));
        }
        EXPECT_TRUE(matches) << command << "\n" << output;
    }
}

TEST(Line, IsWrittenFromTheLevelOn)
{
    const auto lines = [](const std::string& levels) {
        const char* const line = "[-0-9:. ]{30} $1 C02d19/T: $2 Interrupted system call\n";
        return std::regex_replace(levels, std::regex("(.)(.) "), line);
    };
    ExpectOutputs({
        {"HILOG_LEVEL= HILOG_FILE= $P levels 2>&1", ""},
        {"HILOG_LEVEL=X $P levels 2>&1", ""},
        {"HILOG_LEVEL=I $P levels 2>&1", lines("I4 W5 E6 F7 F8 ")},
        {"HILOG_LEVEL=D $P levels 2>&1", lines("D0 D1 D2 D3 I4 W5 E6 F7 F8 ")},
        {"HILOG_LEVEL=DI $P levels 2>&1", "zelklogservice: HILOG_LEVEL=\"DI\": .*\n"},
        {"HILOG_LEVEL=F HILOG_FILE=/no/where $P levels 2>&1",
         "zelklogservice: HILOG_FILE=\"/no/where\": .*\n" + lines("F7 F8 ")},
        {"mkfifo $F; HILOG_LEVEL=F HILOG_FILE=$F timeout 9 $P levels 2>&1",
         "zelklogservice: HILOG_FILE=.*\n" + lines("F7 F8 ")}, // Nobody reads it.
    });
}

TEST(Line, HasTimeProcessThreadAndTag)
{
    const std::string start = R"(\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} (?= *\d+ )[ \d]{5,} (?= *\d+ )[ \d]{5,} W )";
    ExpectOutputs(
        {
            {"echo before >$F; HILOG_LEVEL=W HILOG_FILE=$F $P awkward 2>&1; cat $F",
             "before\n" + start + R"(C0000a/T\\nU: \\na\\n\\nb\\n\n)" + start + R"(C00000/\(null\): \(null\)\n)"},
            {"export TZ=East-5:30; date '+%m-%d %T'; HILOG_LEVEL=E $P ids 2>&1; date '+%m-%d %T'",
             R"((.{14})\n\1\..*\n.*\n(.{14})\..*\n\2\n)"},
            {"HILOG_LEVEL=E $P ids 2>&1", R"((.{18} +(\d+) +(\d+) E C00001/T: \2 \3\n){3})"},
            {"for i in 1 2 3 4 5 6 7 8; do HILOG_LEVEL=F $P levels 2>&1; done | cut -c1-18 | sort -c && echo sorted",
             "sorted\n"},
            {"umask 0; HILOG_FILE=$F $P levels; stat -c %a $F", "644\n"},
        },
        9);
}

TEST(Line, IsLostWhenNobodyReads)
{
    const std::string fifo = "mkfifo $F; exec 3<>$F; HILOG_LEVEL=E ";
    const std::string after = ".* W C00000/HILOG: 5 lines were lost\n.*T: after\n";
    const std::string broken = "nothing, 5 lost, 0 whole, a wait, 0, 1\n\n" + after;
    ExpectOutputs(
        {
            {"mkfifo $F; exec 3<>$F 4>$F 3<&-; HILOG_LEVEL=I $P nobody 2>&4", "-1 0"},
            {fifo + "HILOG_FILE=$F $P unread", broken},
            {fifo + "$P unread 2>$F", broken},
            {fifo + "sh -c 'chmod 0 $1; $0 unread-by-another-user' $P $F 2>$F", broken},
            {"HILOG_LEVEL=E $P unread-socket", "nothing, 5 lost, 0 whole, a wait, 0, 1\n\n?" + after},
        },
        9);
}

// On a busy machine some may be lost, but then the log says so.
TEST(Line, StaysWhole)
{
    std::istringstream output(Output("HILOG_LEVEL=E $P threads 2>&1 | cat"));
    size_t whole = 0;
    size_t lost = 0;
    for (std::string line; std::getline(output, line);) {
        const std::string message = line.substr(std::min(line.find(": ") + 2, line.size()));
        if (line.find("HILOG: ") != std::string::npos) {
            lost += std::stoul(message);
        } else { // Or the start of one that was lost.
            EXPECT_EQ(message.find_first_not_of('x'), std::string::npos);
            whole += message.size() == LONG ? 1 : 0;
        }
    }
    EXPECT_EQ(whole + lost, 200);
    EXPECT_LT(lost, 200); // How many is up to the machine.
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
