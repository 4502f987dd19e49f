// HiLog on a desktop: what a call prints, and which lines are written where. The settings are read when the library is
// loaded, so what depends on them runs in a process of its own: this program, started with the name of a scenario.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <fcntl.h>
#include <future>
#include <gtest/gtest.h>
#include <iostream>
#include <map>
#include <new>
#include <regex>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "host/hilog/capture.h"
#include "in_threads.h"

namespace {

using namespace OHOS::Host;

constexpr unsigned int DOMAIN = 0xD002D19;

// %m prints "Interrupted system call", and errno stays.
template <typename... Args>
void ExpectPrinted(const std::string& expected, const std::string& format, Args... args)
{
    std::string message = "nothing";
    SetLogCapture([&message](const LogRecord& record) { message = record.message; });
    errno = EINTR;
    HiLogPrint(LOG_CORE, LOG_DEBUG, DOMAIN, "T", format.c_str(), args..., 0); // Clang wants an argument.
    EXPECT_EQ(errno, EINTR) << format;
    EXPECT_EQ(message, expected) << format;
    SetLogCapture(nullptr);
}

TEST(Format, PrintsWhateverTheMarker)
{
    const char* const null = nullptr;
    ExpectPrinted("a|b|c|4|5", "%{public}s|%{private}s|%s|%{public}d|%{private}d", "a", "b", "c", 4, 5);
    ExpectPrinted("1z (null) Interrupted system call", "%{public}uz %{public}s %{private}m", 1U, null);
    ExpectPrinted("    text|te      |tex|+07.50", "%{public}8s|%{private}-8.2s|%{public}.*s|%{public}+06.2f", "text",
                  "text", 3, "text", 7.5);
    ExpectPrinted("-1 " + std::to_string(SIZE_MAX) + " -8 wide", "%{public}hhd %{public}zu %{private}lld %{public}ls",
                  255, SIZE_MAX, -8LL, L"wide");
    ExpectPrinted("b a b", "%{public}2$s %{private}1$s %2$s", "a", "b");
    ExpectPrinted("2", "%{public}2$d", 1, 2);
}

TEST(Format, KeepsWhatIsNoMarkerOfAConversion)
{
    ExpectPrinted("100% {public}\n\t\x01\xff", "100%% {public}\n\t\x01\xff");
    ExpectPrinted("%{public}s|%n|%{private}n", "%%{public}s|%{public}%n|%{private}%{private}n");
    ExpectPrinted("%{foo}d|%{publi|%{private}d", "%{foo}d|%{publi|%{public}{private}d");
}

TEST(Format, AndMessageMayHaveAnyLength)
{
    for (size_t size = 0; size < 600; ++size) {
        const std::string text(size, 'x');
        ExpectPrinted(text + text + "7", text + "%{public}s%{public}d", text.c_str(), 7);
    }
    const std::string big(3'000'000, 'x');
    ExpectPrinted(big + "Interrupted system call", "%{public}s%{public}m", big.c_str());
}

int Print(const std::string& message)
{
    return HiLogPrint(LOG_CORE, LOG_ERROR, 1, "T", "%{public}s", message.c_str());
}

// Prints what the calls return, and whether something was stored.
void PrintLost()
{
    long long stored = 7;
    for (const char* format : {"%{public}n", "%n", "a% n", "%2$n", "%-08.3lln", "%w64n", "%wf64n", "%l-%n", "%5%%n",
                               "%y%n", "100%", "%{public}", "%{public}99999999999d"}) {
        std::cout << format << " " << HiLogPrint(LOG_CORE, LOG_ERROR, 1, "T", format, &stored, &stored) << "\n";
    }
    SetLogCapture([](const LogRecord&) { throw std::bad_alloc(); });
    const std::string unwanted = "%n";
    std::cout << "memory short " << Print("x") << ", below the level "
              << HiLogPrint(LOG_CORE, LOG_INFO, 1, "T", unwanted.c_str(), &stored) << ", " << stored << std::endl;
    SetLogCapture(nullptr);
    Print("after");
    Print("again");
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
template <size_t SIZE>
void PrintUnread()
{
    const std::string message(SIZE, 'x');
    const int descriptor = dup(READER);
    int captured = 0;
    SetLogCapture([&captured](const LogRecord&) { ++captured; });
    int written = 0;
    while (Print(message) > 0) {
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
    const int isNonBlocking = (fcntl(READER, F_GETFL) | fcntl(STDERR_FILENO, F_GETFL)) & O_NONBLOCK;
    std::cout << TimeOfFour(message) << ", " << isNonBlocking << ", " << dup(READER) - descriptor << "\n" << after;
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
    {"lost", PrintLost},
    {"behind",
     [] {
         // Its many line feeds are escaped while the other lines wait for it.
         const auto longLine = std::async(std::launch::async, Print, std::string().append(160'000'000, '\n'));
         while (Print("x") > 0 && longLine.wait_for(std::chrono::seconds(0)) == std::future_status::timeout) {
         }
         std::cout << TimeOfFour("x")
                   << (longLine.wait_for(std::chrono::seconds(0)) == std::future_status::timeout ? "" : ", too late");
     }},
    {"child",
     [] {
         execl("/bin/sh", "", "-c", "readlink /proc/$$/fd/* | grep -c /hilog_test[.]", nullptr);
     }},
    {"unread", PrintUnread<10'000>},      // Above what a pipe takes as a whole.
    {"unread-short", PrintUnread<1'000>}, // Nothing is broken off.
    {"unread-by-another-user",
     [] {
         const uid_t user = geteuid();
         if (user != 0 || seteuid(65534) == 0) {
             PrintUnread<10'000>();
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
             PrintUnread<10'000>();
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

constexpr int BUSY = 9; // Tries for an output that depends on time, on a busy machine.

// `expected` is a regular expression.
void ExpectOutput(const std::string& command, const std::string& expected, int tries = 1)
{
    std::string output;
    bool matches = false;
    for (int i = 0; i < tries && !matches; ++i) {
        output = Output(command);
        matches = std::regex_match(output, std::regex(expected));
    }
    EXPECT_TRUE(matches) << command << "\n" << output;
}

TEST(Lines, AreWrittenAsTheSettingsSay)
{
    const auto lines = [](const std::string& levels) {
        const char* const line = "[-0-9:. ]{30} $1 C02d19/T: $2 Interrupted system call\n";
        return std::regex_replace(levels, std::regex("(.)(.) "), line);
    };
    ExpectOutput("HILOG_LEVEL= HILOG_FILE= $P levels 2>&1", "");
    ExpectOutput("HILOG_LEVEL=X $P levels 2>&1", "");
    ExpectOutput("HILOG_LEVEL=I $P levels 2>&1", lines("I4 W5 E6 F7 F8 "));
    ExpectOutput("HILOG_LEVEL=D $P levels 2>&1", lines("D0 D1 D2 D3 I4 W5 E6 F7 F8 "));
    ExpectOutput("HILOG_LEVEL=DI $P levels 2>&1", "zelklogservice: HILOG_LEVEL=\"DI\": .*\n");
    // A pipe that nobody reads cannot be opened.
    ExpectOutput("mkfifo $F; HILOG_LEVEL=F HILOG_FILE=$F timeout 9 $P levels 2>&1",
                 "zelklogservice: HILOG_FILE=\".*\n" + lines("F7 F8 "));
    ExpectOutput("umask 0; HILOG_FILE=$F $P levels; stat -c %a $F", "644\n");
    ExpectOutput("HILOG_FILE=$F $P child", "0\n");
}

TEST(Lines, SayWhenAndWhereTheyWereWritten)
{
    const std::string start = R"(\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} (?= *\d+ )[ \d]{5,} (?= *\d+ )[ \d]{5,} W )";
    ExpectOutput("echo before >$F; HILOG_LEVEL=W HILOG_FILE=$F $P awkward 2>&1; cat $F",
                 "before\n" + start + R"(C0000a/T\\nU: \\na\\n\\nb\\n\n)" + start + R"(C00000/\(null\): \(null\)\n)");
    ExpectOutput("export TZ=East-5:30; date '+%m-%d %T'; HILOG_LEVEL=E $P ids 2>&1; date '+%m-%d %T'",
                 R"((.{14})\n\1\..*\n.*\n(.{14})\..*\n\2\n)", BUSY);
    ExpectOutput("HILOG_LEVEL=E $P ids 2>&1", R"((.{18} +(\d+) +(\d+) E C00001/T: \2 \3\n){3})");
    ExpectOutput(
        "for i in 1 2 3 4 5 6 7 8; do HILOG_LEVEL=F $P levels 2>&1; done | cut -c1-18 | sort -c && echo sorted",
        "sorted\n");
}

TEST(Lines, ThatCannotBeWrittenAreLost)
{
    ExpectOutput(
        "HILOG_LEVEL=E $P lost 2>&1",
        "(.* -1\n){13}memory short -1, below the level 0, 7\n.* W C00000/HILOG: 14 lines were lost\n.*T: after\n.*T: "
        "again\n");
    ExpectOutput("mkfifo $F; exec 3<>$F 4>$F 3<&-; HILOG_LEVEL=I $P nobody 2>&4", "-1 0");
    ExpectOutput("HILOG_LEVEL=E HILOG_FILE=/dev/null $P behind", "nothing", BUSY);
}

TEST(Lines, ThatNobodyReadsAreLost)
{
    const std::string fifo = "mkfifo $F; exec 3<>$F; HILOG_LEVEL=E ";
    const std::string after = ".* W C00000/HILOG: 5 lines were lost\n.*T: after\n";
    const std::string whole = "nothing, 5 lost, 0 whole, a wait, 0, 1\n";
    ExpectOutput(fifo + "HILOG_FILE=$F $P unread", whole + "\n" + after, BUSY);
    ExpectOutput(fifo + "$P unread-short 2>$F", whole + after, BUSY);
    ExpectOutput(fifo + "sh -c 'chmod 0 $1; $0 unread-by-another-user' $P $F 2>$F", whole + "\n" + after, BUSY);
    ExpectOutput("HILOG_LEVEL=E $P unread-socket", whole + "\n?" + after, BUSY);
}

// On a busy machine some may be lost, but then the log says so.
TEST(Lines, OfThreadsStayWhole)
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
