#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "hilog/capture.h"

using OHOS::Host::LogRecord;
using OHOS::Host::SetLogCapture;

namespace {

constexpr unsigned int DOMAIN = 0xD002D19;

// What a call prints as its message.
template <typename... Args>
std::string Printed(const std::string& format, Args... args)
{
    std::string message;
    SetLogCapture([&message](const LogRecord& record) { message = record.message; });
    HiLogPrint(LOG_CORE, LOG_DEBUG, DOMAIN, "T", format.c_str(), args...);
    SetLogCapture(nullptr);
    return message;
}

TEST(Format, PrintsByPrivacy)
{
    const char* const null = nullptr;
    const wchar_t* const wideNull = nullptr;
    int stored = 7;
    const std::string big(3'000'000, 'x');
    const std::vector<std::pair<std::string, std::string>> cases = {
        {Printed("plain, 100%% \n\t\x01\xff"), "plain, 100% \n\t\x01\xff"},
        {Printed("%{public}s|%{private}s|%s|%{public}d", "a", "b", "c", 4), "a|<private>|<private>|4"},
        {Printed("%{public}uz %{public}zu", 1U, size_t{2}), "1z 2"},
        {Printed("%{private}*.*f %Lg %c %lld %{public}d", 5, 2, 1.5, 2.5L, 'c', 3LL, 6),
         "<private> <private> <private> <private> 6"},
        {Printed("%{public}s %{public}.2s %{public}8s %{public}ls %{public}.2ls|", null, null, null, wideNull,
                 wideNull),
         "(null) (null)   (null) (null) (null)|"},
        {Printed("%{public}s", big.c_str()), big},
        {Printed("%{public}c%{public}d", '\0', 1), std::string("\0001", 2)},
        {Printed("a%{public}nb%nc%{public}d", &stored, &stored, 1), "ab<private>c1"},
        {Printed("%{public}*d|%{public}-*d|%{public}.*s", -4, 1, 4, 2, -1, "abc"), "1   |2   |abc"},
        {Printed("%{public}hhd %{public}hd %{public}hhu %{public}hx", 300, 70000, 511U, 0x12345), "44 4464 255 2345"},
        {Printed("%{public}C%{public}S%{public}%", L'w', L"ide"), "wide%"},
        {Printed("%{public}lc%{public}d", static_cast<wint_t>(0x110000), 5), "%{public}lc5"},
        // No conversions: as they stand, and no argument taken.
        {Printed("%{public}d %{public}1$d %{foo}d %y %{public}Q %lm", 1), "1 %{public}1$d %{foo}d %y %{public}Q %lm"},
        {Printed("%{public}99999999999d %{public}.99999999999s %{public}*y %5%{public}d", 3),
         "%{public}99999999999d %{public}.99999999999s %{public}*y %53"},
        {Printed("end %"), "end %"},
        {Printed("end %{public}"), "end %{public}"},
        {Printed("end %{publ"), "end %{publ"},
        {Printed("end %-08.3l"), "end %-08.3l"},
        {Printed(""), ""},
    };
    for (const auto& [printed, expected] : cases) {
        EXPECT_EQ(printed, expected);
    }
    EXPECT_EQ(stored, 7);
}

// printf itself says what each combination prints.
template <typename Value>
void ExpectAsPrintf(const std::vector<std::string>& kinds, Value value)
{
    for (const char* flags : {"", "-", "+", " ", "#", "0", "'", "-+#", "00+"}) {
        for (const char* width : {"", "9", "127", "128"}) {
            for (const char* precision : {"", ".", ".0", ".3", ".200"}) {
                for (const std::string& kind : kinds) {
                    const std::string conversion = std::string(flags) + width + precision + kind;
                    std::array<char, 1000> expected{};
                    std::snprintf(expected.data(), expected.size(), ("<%" + conversion + ">").c_str(), value);
                    EXPECT_EQ(Printed("<%{public}" + conversion + ">", value), expected.data()) << conversion;
                }
            }
        }
    }
}

TEST(Format, PrintsAsPrintfDoes)
{
    for (const long number : {0L, 1L, -1L, LONG_MAX, LONG_MIN}) {
        ExpectAsPrintf({"hhd", "hd", "d", "i", "hho", "hu", "x", "X", "u"}, static_cast<int>(number));
        ExpectAsPrintf({"ld", "lld", "jd", "zd", "td", "Ld", "lo", "llx", "jX", "zu", "tu", "Lu"}, number);
    }
    for (const double number : {0.0, -2.5, 1e300, 1.0 / 3, HUGE_VAL}) {
        ExpectAsPrintf({"a", "A", "e", "E", "f", "F", "g", "G", "lf"}, number);
        ExpectAsPrintf({"La", "Le", "Lf", "LG"}, static_cast<long double>(number));
    }
    ExpectAsPrintf({"c", "lc"}, static_cast<int>('x'));
    ExpectAsPrintf({"p"}, static_cast<const void*>("p"));
    ExpectAsPrintf({"p"}, static_cast<const void*>(nullptr));
    ExpectAsPrintf({"ls", "S"}, L"wide text");
    for (const char* const flags : {"", "-"}) {
        for (const char* const size : {"", "1", "12", ".", ".3", "7.2", ".100"}) {
            std::array<char, 100> expected{};
            std::snprintf(expected.data(), expected.size(), ("%" + std::string(flags) + size + "s").c_str(), "a text");
            EXPECT_EQ(Printed("%{public}" + std::string(flags) + size + "s", "a text"), expected.data())
                << flags << size;
        }
    }
}

TEST(Format, KeepsErrno)
{
    errno = EINTR;
    EXPECT_EQ(Printed("%{public}-30m|%{public}lc|%m|%{public}m", static_cast<wint_t>(0x110000)),
              "Interrupted system call       |%{public}lc|<private>|Interrupted system call");
    EXPECT_EQ(errno, EINTR);
}

TEST(Capture, SeesEveryLineUntilItEnds)
{
    std::vector<LogRecord> records;
    SetLogCapture([&records](const LogRecord& record) { records.push_back(record); });
    testing::internal::CaptureStderr();
    EXPECT_EQ(HiLogPrint(LOG_APP, LOG_ERROR, DOMAIN, "A\nB", "one\n"), 0);
    SetLogCapture([&records](const LogRecord& record) { records.push_back(record); }, true);
    EXPECT_EQ(HiLogPrint(LOG_CORE, LOG_DEBUG, DOMAIN, "T", "two"), 0);
    const int written = HiLogPrint(LOG_CORE, LOG_FATAL, DOMAIN, "T", "three");
    SetLogCapture(nullptr);
    HiLogPrint(LOG_CORE, LOG_ERROR, DOMAIN, "T", "four");
    const std::string lines = testing::internal::GetCapturedStderr();

    ASSERT_EQ(records.size(), 3U);
    EXPECT_EQ(records[0].level, LOG_ERROR);
    EXPECT_EQ(records[0].domain, DOMAIN);
    EXPECT_EQ(records[0].tag, "A\nB");
    EXPECT_EQ(records[0].message, "one\n");
    EXPECT_EQ(records[2].message, "three");
    EXPECT_EQ(lines.find('\n') + 1, static_cast<size_t>(written)) << lines;
    EXPECT_TRUE(std::regex_match(lines, std::regex(".* F C02d19/T: three\n.* E C02d19/T: four\n"))) << lines;
}

// The settings are read once in a process, so what depends on them runs in a process of its own: this program, started
// with the name of one of these.

void PrintEveryLevel()
{
    errno = EINTR;
    for (int level = LOG_LEVEL_MIN; level <= LOG_LEVEL_MAX; ++level) {
        HiLogPrint(LOG_CORE, static_cast<LogLevel>(level), DOMAIN, "T", "%{public}d %{public}m", level);
    }
}

void PrintAwkwardLine()
{
    HiLogPrint(LOG_CORE, LOG_WARN, 0xFFF0000A, "T\nU", "%{public}d %{public}d\na\n\nb\n", getpid(), gettid());
    HiLogPrint(LOG_CORE, LOG_WARN, 0, nullptr, nullptr);
}

void PrintTimes()
{
    HiLogPrint(LOG_CORE, LOG_ERROR, 1, "T", "%{public}ld", std::time(nullptr));
    std::this_thread::sleep_for(std::chrono::milliseconds(2100));
    HiLogPrint(LOG_CORE, LOG_ERROR, 1, "T", "%{public}ld", std::time(nullptr));
}

void PrintFromChild()
{
    HiLogPrint(LOG_CORE, LOG_ERROR, 1, "T", "%{public}d %{public}d", getpid(), gettid());
    if (fork() == 0) {
        HiLogPrint(LOG_CORE, LOG_ERROR, 1, "T", "%{public}d %{public}d", getpid(), gettid());
        _exit(0);
    }
    wait(nullptr);
}

// Lines far above what a pipe takes at once, into a standard error that does not block, while captures and
// children come and go.
void PrintFromThreads()
{
    fcntl(STDERR_FILENO, F_SETFL, fcntl(STDERR_FILENO, F_GETFL) | O_NONBLOCK);
    std::vector<std::thread> threads;
    for (char letter = 'a'; letter <= 'd'; ++letter) {
        threads.emplace_back([letter] {
            for (int line = 1; line <= 50; ++line) {
                HiLogPrint(LOG_CORE, LOG_ERROR, 1, "T", "%{public}s", std::string(line * 2000UL, letter).c_str());
            }
        });
    }
    for (int count = 0; count < 50; ++count) {
        SetLogCapture([](const LogRecord&) {}, true);
        SetLogCapture(nullptr);
        int status = 0;
        if (fork() == 0) {
            // Hangs when a line that another thread was writing keeps the child from logging.
            alarm(10);
            SetLogCapture(nullptr);
            execl("/bin/true", "true", nullptr); // ThreadSanitizer would miss the other threads at an exit.
        }
        if (wait(&status) < 0 || status != 0) {
            std::printf("a child cannot log");
        }
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

void PrintToNobody()
{
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        return;
    }
    close(ends[0]);
    dup2(ends[1], STDERR_FILENO);
    std::printf("%d", HiLogPrint(LOG_CORE, LOG_ERROR, DOMAIN, "T", "lost"));
    std::printf(" %d", HiLogPrint(LOG_CORE, LOG_DEBUG, DOMAIN, "T", "below"));
}

const std::vector<std::pair<std::string, void (*)()>> SCENARIOS = {
    {"levels", PrintEveryLevel}, {"awkward", PrintAwkwardLine}, {"fork", PrintFromChild},
    {"times", PrintTimes},       {"threads", PrintFromThreads}, {"nobody", PrintToNobody},
};

std::string g_program; // NOLINT(cert-err58-cpp)

// Standard output and standard error of a scenario under these settings (words of the shell).
std::string RunScenario(const std::string& settings, const std::string& scenario)
{
    const std::string command = settings + " '" + g_program + "' --scenario " + scenario + " 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    std::string output;
    std::array<char, 4096> buffer;
    while (const size_t size = std::fread(buffer.data(), 1, buffer.size(), pipe)) {
        output.append(buffer.data(), size);
    }
    EXPECT_EQ(pclose(pipe), 0) << command << "\n" << output;
    return output;
}

std::string Contents(const std::string& path)
{
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

TEST(Settings, ChooseTheLevel)
{
    const std::string report = "zelklogservice: HILOG_LEVEL=\"[^\"]*\": [^\n]*\n";
    const std::vector<std::array<std::string, 3>> cases = {
        {"", "", "I4 W5 E6 F7 F8 "},
        {"HILOG_LEVEL=", "", "I4 W5 E6 F7 F8 "},
        {"HILOG_LEVEL=D", "", "D0 D1 D2 D3 I4 W5 E6 F7 F8 "},
        {"HILOG_LEVEL=I", "", "I4 W5 E6 F7 F8 "},
        {"HILOG_LEVEL=W", "", "W5 E6 F7 F8 "},
        {"HILOG_LEVEL=E", "", "E6 F7 F8 "},
        {"HILOG_LEVEL=F", "", "F7 F8 "},
        {"HILOG_LEVEL=X", "", ""},
        {"HILOG_LEVEL=e", report, "I4 W5 E6 F7 F8 "},
        {"HILOG_LEVEL=DI", report, "I4 W5 E6 F7 F8 "},
    };
    for (const auto& [setting, reported, levels] : cases) {
        const std::string expected = std::regex_replace(levels, std::regex("(.)(.) "),
                                                        "[-0-9:. ]{30} $1 C02d19/T: $2 Interrupted system call\n");
        const std::string output = RunScenario("HILOG_FILE= " + setting, "levels");
        EXPECT_TRUE(std::regex_match(output, std::regex(reported + expected))) << setting << "\n" << output;
    }
}

TEST(Settings, AppendToTheFile)
{
    const std::string path = testing::TempDir() + "hilog_test." + std::to_string(getpid());
    std::ofstream(path) << "before\n";
    EXPECT_EQ(RunScenario("HILOG_FILE='" + path + "'", "awkward"), "");
    EXPECT_TRUE(std::regex_match(
        Contents(path),
        std::regex(
            "before\n"
            "\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3} (?= *\\d+ )([ \\d]{5,}) (?= *\\d+ )([ \\d]{5,}) W C0000a/"
            "T\\\\nU: \\d+ \\d+\\\\na\\\\n\\\\nb\\\\n\n"
            "[-0-9:. ]{30} W C00000/\\(null\\): \\(null\\)\n")))
        << Contents(path);
    std::remove(path.c_str());

    const std::string output = RunScenario("HILOG_FILE=/nowhere/at/all HILOG_LEVEL=D", "levels");
    EXPECT_TRUE(std::regex_match(output, std::regex("zelklogservice: HILOG_FILE=\"/nowhere/at/all\": .*\n"
                                                    "(.*T: \\d Interrupted system call\n){9}")))
        << output;
}

TEST(Line, NamesItsProcessAndThread)
{
    const std::string output = RunScenario("", "fork");
    EXPECT_TRUE(std::regex_match(output, std::regex(".{18} +(\\d+) +(\\d+) E C00001/T: \\1 \\2\n"
                                                    ".{18} +(?!\\1)(\\d+) +(\\d+) E C00001/T: \\3 \\4\n")))
        << output;
}

TEST(Line, StandsInLocalTime)
{
    const auto stamp = [](std::time_t time) {
        time += 5 * 3600 + 30 * 60;
        std::tm parts{};
        gmtime_r(&time, &parts);
        std::array<char, 20> text{};
        std::strftime(text.data(), text.size(), "%m-%d %H:%M:%S", &parts);
        return std::string(text.data());
    };
    std::istringstream lines(RunScenario("TZ=East-5:30", "times"));
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        const std::time_t time = std::stol(line.substr(line.rfind(' ')));
        EXPECT_TRUE(line.substr(0, 14) == stamp(time) || line.substr(0, 14) == stamp(time + 1)) << line;
    }
    EXPECT_EQ(count, 2);
}

TEST(Line, StaysWhole)
{
    const std::string path = testing::TempDir() + "hilog_threads." + std::to_string(getpid());
    const std::string throughPipe = RunScenario("HILOG_FILE=", "threads");
    EXPECT_EQ(RunScenario("HILOG_FILE='" + path + "'", "threads"), "");
    const std::array<std::string, 2> outputs{throughPipe, Contents(path)};
    std::remove(path.c_str());
    for (const std::string& output : outputs) {
        std::vector<std::string> messages;
        std::istringstream lines(output);
        for (std::string line; std::getline(lines, line);) {
            const size_t start = line.find("E C00001/T: ");
            messages.push_back(start == std::string::npos ? line : line.substr(start + 12));
        }
        std::sort(messages.begin(), messages.end());
        std::vector<std::string> expected;
        for (char letter = 'a'; letter <= 'd'; ++letter) {
            for (int line = 1; line <= 50; ++line) {
                expected.emplace_back(line * 2000, letter);
            }
        }
        EXPECT_TRUE(messages == expected) << messages.size() << " lines";
    }
}

TEST(Line, IsLostWithItsReaderAndNothingElse)
{
    EXPECT_EQ(RunScenario("HILOG_FILE=", "nobody"), "-1 0");
    EXPECT_EQ(RunScenario("HILOG_LEVEL=x", "nobody"), "-1 0");
}

} // namespace

int main(int argc, char** argv)
{
    for (const auto& [name, scenario] : SCENARIOS) {
        if (argc == 3 && std::string(argv[1]) == "--scenario" && argv[2] == name) {
            scenario();
            return 0;
        }
    }
    std::array<char, 4096> path{};
    g_program = readlink("/proc/self/exe", path.data(), path.size() - 1) > 0 ? path.data() : argv[0];
    // Whatever the caller has set, the tests choose.
    unsetenv("HILOG_LEVEL"); // NOLINT(concurrency-mt-unsafe)
    unsetenv("HILOG_FILE");  // NOLINT(concurrency-mt-unsafe)
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
