#include <algorithm>
#include <climits>
#include <cmath>
#include <ctime>
#include <fcntl.h>
#include <future>
#include <gtest/gtest.h>
#include <iomanip>
#include <regex>
#include <sys/wait.h>
#include <unistd.h>

#include "hilog/capture.h"

using namespace OHOS::Host;

constexpr unsigned int DOMAIN = 0xD002D19;

// clang-format off
// What a call prints as its message. It leaves errno alone.
template <typename... Args> std::string Printed(const std::string& format, Args... args)
{
    std::string message;
    SetLogCapture([&message](const LogRecord& record) { message = record.message; });
    errno = EINTR;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security" // The formats are the rows of a table.
    HiLogPrint(LOG_CORE, LOG_DEBUG, DOMAIN, "T", format.c_str(), args...);
#pragma GCC diagnostic pop
    EXPECT_EQ(errno, EINTR);
    return SetLogCapture(nullptr), message;
}

TEST(Format, PrintsByPrivacy)
{
    const char* const null = nullptr;
    const wchar_t* const wideNull = nullptr;
    int stored = 7;
    const std::string big(3'000'000, 'x');
    const std::pair<std::string, std::string> cases[] = {
        {Printed("100%% \n\t\x01\xff"), "100% \n\t\x01\xff"}, {Printed("%{public}c1", '\0'), {"\0001", 2}},
        {Printed("%{public}s|%{private}s|%s|%{public}d", "a", "b", "c", 4), "a|<private>|<private>|4"},
        {Printed("%{private}*.*f %Lg %c %lld %{public}d", 5, 2, 1.5, 2.5L, 'c', 3LL, 6),
         "<private> <private> <private> <private> 6"},
        {Printed("%{public}s %{public}.2s %{public}8s %{public}.2ls|", null, null, null, wideNull),
         "(null) (null)   (null) (null)|"},
        {Printed("%{public}uz %{public}zu", 1U, size_t{2}), "1z 2"}, {Printed("%{public}s", big.c_str()), big},
        {Printed("a%{public}nb%nc%{public}d", &stored, &stored, 1), "ab<private>c1"},
        {Printed("%{public}*d|%{public}-*d|%{public}.*s", -4, 1, 4, 2, -1, "abc"), "1   |2   |abc"},
        {Printed("%{public}hhd %{public}hd %{public}hhu %{public}hx", 300, 70000, 511U, 0x12345), "44 4464 255 2345"},
        {Printed("%{public}C%{public}S%{public}%", L'w', L"ide"), "wide%"},
        {Printed("%{public}lc|%m|%{public}-25m|%{public}lc%{public}d", wint_t{0x110000}, wint_t{0x110000}, 5),
         "%{public}lc|<private>|Interrupted system call  |%{public}lc5"},
        // No conversions: as they stand, and no argument taken.
        {Printed("%{public}d %{public}1$d %{foo}d %y %{public}Q %lm", 1), "1 %{public}1$d %{foo}d %y %{public}Q %lm"},
        {Printed("%{public}99999999999d %{public}.99999999999s %{public}*y %5%{public}d", 1, "b", 2, 3),
         "%{public}99999999999d %{public}.99999999999s %{public}*y %53"},
        {Printed("end %"), "end %"}, {Printed("end %{public}"), "end %{public}"}, {Printed("end %{publ"), "end %{publ"},
        {Printed("end %-08.3l"), "end %-08.3l"}, {Printed(""), ""},
    };
    for (const auto& [printed, expected] : cases) { EXPECT_EQ(printed, expected); }
    EXPECT_EQ(stored, 7);
}

// printf itself says what each combination prints.
template <typename Value> void ExpectAsPrintf(const std::vector<std::string>& kinds, Value value)
{
    const std::string flags[] = {"", "-", "+", " ", "#", "0", "'", "-+#", "00+"};
    const std::string sizes[] = {"", "9", "127", "128", ".", "9.0", "2.3", "127.3", "128.", ".200"};
    for (size_t i = 0; i < 9 * 10 * kinds.size(); ++i) {
        const std::string conversion = flags[i % 9] + sizes[i / 9 % 10] + kinds[i / 90];
        char expected[1000];
        std::snprintf(expected, sizeof(expected), ("<%" + conversion + ">").c_str(), value);
        EXPECT_EQ(Printed("<%{public}" + conversion + ">", value), expected) << conversion;
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
    ExpectAsPrintf({"s"}, "a text");
}

TEST(Capture, SeesEveryLineUntilItEnds)
{
    std::ostringstream seen;
    const auto capture = [&seen](const LogRecord& record) {
        seen << record.level << " " << record.domain << " " << record.tag << ": " << record.message << "|";
    };
    testing::internal::CaptureStderr();
    SetLogCapture(capture);
    EXPECT_EQ(HiLogPrint(LOG_APP, LOG_INFO, 19, "A\nB", "one\n"), 0);
    EXPECT_EQ(HiLogPrint(LOG_CORE, LOG_DEBUG, DOMAIN, "T", "two"), 0);
    const int written = HiLogPrint(LOG_CORE, LOG_FATAL, DOMAIN, "T", "three");
    SetLogCapture(nullptr);
    HiLogPrint(LOG_CORE, LOG_ERROR, DOMAIN, "T", "four");
    const std::string lines = testing::internal::GetCapturedStderr();
    EXPECT_EQ(seen.str(), "4 19 A\nB: one\n|3 218115353 T: two|7 218115353 T: three|");
    EXPECT_EQ(lines.find('\n') + 1, static_cast<size_t>(written)) << lines;
    EXPECT_TRUE(std::regex_match(lines, std::regex(".* F C02d19/T: three\n.* E C02d19/T: four\n"))) << lines;
}

void Print(const std::string& message) { HiLogPrint(LOG_CORE, LOG_ERROR, 1, "T", "%{public}s", message.c_str()); }

// The settings are read once in a process, so what depends on them runs in a process of its own: this program, started
// with the name of one of these.
const std::map<std::string, void (*)()> SCENARIOS = {
    {"levels", [] {
        errno = EINTR;
        for (int level = LOG_LEVEL_MIN; level <= LOG_LEVEL_MAX; ++level) {
            HiLogPrint(LOG_CORE, static_cast<LogLevel>(level), DOMAIN, "T", "%{public}d %{public}m", level);
        }
    }},
    {"awkward", [] {
        HiLogPrint(LOG_CORE, LOG_WARN, 0xFFF0000A, "T\nU", "\na\n\nb\n");
        HiLogPrint(LOG_CORE, LOG_WARN, 0, nullptr, nullptr);
    }},
    {"times", [] {
        for (int line = 0; line < 2; ++line, usleep(1'100'000)) {
            const std::time_t now = std::time(nullptr), next = now + 1; // Either may be the line's.
            std::ostringstream stamps;
            stamps << std::put_time(std::localtime(&now), "%m-%d %T ");
            stamps << std::put_time(std::localtime(&next), "%m-%d %T ");
            Print(stamps.str());
        }
    }},
    {"fork", [] {
        const auto print = [] { Print(std::to_string(getpid()) + " " + std::to_string(gettid())); };
        print();
        fork() == 0 ? print() : static_cast<void>(wait(nullptr));
    }},
    {"nobody", [] {
        int ends[2];
        if (pipe(ends) == 0 && close(ends[0]) == 0 && dup2(ends[1], STDERR_FILENO) >= 0) {
            std::printf("%d", HiLogPrint(LOG_CORE, LOG_ERROR, DOMAIN, "T", "lost"));
            std::printf(" %d", HiLogPrint(LOG_CORE, LOG_DEBUG, DOMAIN, "T", "below"));
        }
    }},
    // Lines far above what a pipe takes at once, into a standard error that does not block, while captures and
    // children come and go. A child hangs when a line that another thread was writing keeps it from logging.
    {"threads", [] {
        fcntl(STDERR_FILENO, F_SETFL, fcntl(STDERR_FILENO, F_GETFL) | O_NONBLOCK);
        const auto write = [](char letter) {
            for (size_t line = 1; line <= 50; ++line) { Print(std::string(line * 2000, letter)); }
        };
        std::future<void> writers[4];
        for (size_t i = 0; i < 4; ++i) { writers[i] = std::async(std::launch::async, write, "abcd"[i]); }
        for (int count = 0; count < 50; ++count) {
            SetLogCapture([](const LogRecord&) {});
            SetLogCapture(nullptr);
            if (fork() == 0) {
                alarm(10);
                SetLogCapture(nullptr);
                execl("/bin/true", "true", nullptr); // ThreadSanitizer would miss the other threads at an exit.
            }
            int status = 0;
            if (wait(&status) < 0 || status != 0) { std::printf("a child cannot log"); }
        }
    }},
};

// What a scenario writes under these settings (words of the shell) to standard output and error, then to the file $F.
std::string RunScenario(const std::string& settings, const std::string& scenario)
{
    const std::string pid = std::to_string(getpid());
    const std::string command = "F=" + testing::TempDir() + "hilog_test." + pid + "; { " + settings + " /proc/" + pid +
                                "/exe " + scenario + " 2>&1 || echo failed; } | cat - $F 2>/dev/null; rm -f $F";
    FILE* pipe = popen(command.c_str(), "r");
    std::string output;
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) { output += static_cast<char>(c); }
    return pclose(pipe), output;
}

TEST(Line, StandsAsSet)
{
    const std::regex level("(.)(.) ");
    const char* const line = "[-0-9:. ]{30} $1 C02d19/T: $2 Interrupted system call\n";
    const auto lines = [&](const std::string& levels) { return std::regex_replace(levels, level, line); };
    const std::string f = lines("F7 F8 "), e = lines("E6 ") + f, w = lines("W5 ") + e, i = lines("I4 ") + w;
    const std::string report = "zelklogservice: HILOG_LEVEL=\"[^\"]*\": [^\n]*\n";
    const std::string start = R"(\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} (?= *\d+ )[ \d]{5,} (?= *\d+ )[ \d]{5,} W )";
    const std::array<std::string, 3> cases[] = {
        {"", "levels", ""}, {"HILOG_FILE= HILOG_LEVEL=", "levels", ""}, {"HILOG_LEVEL=I", "levels", i},
        {"HILOG_LEVEL=D", "levels", lines("D0 D1 D2 D3 ") + i}, {"HILOG_LEVEL=W", "levels", w},
        {"HILOG_LEVEL=E", "levels", e}, {"HILOG_LEVEL=F", "levels", f}, {"HILOG_LEVEL=X", "levels", ""},
        {"HILOG_LEVEL=e", "levels", report}, {"HILOG_LEVEL=DI", "levels", report},
        {"HILOG_LEVEL=I HILOG_FILE=/no/where", "levels", "zelklogservice: HILOG_FILE=\"/no/where\": .*\n" + i},
        {"HILOG_FILE= HILOG_LEVEL=I", "nobody", "-1 0"},
        {"HILOG_LEVEL=E TZ=East-5:30", "times", R"((.{14})\..*T: .*\1 .*\n(.{14})\..*T: .*\2 .*\n)"},
        {"HILOG_LEVEL=E", "fork", R"(.{18} +(\d+) +(\d+) E C00001/T: \1 \2\n.{18} +(?!\1)(\d+) +(\d+) E C00001/T: \3 \4\n)"},
        {"echo before >$F; HILOG_LEVEL=W HILOG_FILE=$F", "awkward",
         "before\n" + start + R"(C0000a/T\\nU: \\na\\n\\nb\\n\n)" + start + R"(C00000/\(null\): \(null\)\n)"},
    };
    for (const auto& [settings, scenario, expected] : cases) {
        const std::string output = RunScenario(settings, scenario);
        EXPECT_TRUE(std::regex_match(output, std::regex(expected))) << settings << "\n" << output;
    }
}

TEST(Line, StaysWhole)
{
    std::multiset<std::string> expected;
    for (size_t line = 0; line < 200; ++line) { expected.emplace((line / 4 + 1) * 2000, "abcd"[line % 4]); }
    for (const char* settings : {"HILOG_LEVEL=E", "HILOG_LEVEL=E HILOG_FILE=$F"}) {
        std::multiset<std::string> messages;
        std::istringstream output(RunScenario(settings, "threads"));
        for (std::string line; std::getline(output, line);) {
            messages.insert(line.substr(std::min(line.find("E C00001/T: ") + 12, line.size())));
        }
        EXPECT_TRUE(messages == expected) << messages.size() << " lines";
    }
}
// clang-format on

int main(int argc, char** argv)
{
    if (argc == 2 && SCENARIOS.count(argv[1]) > 0) {
        return SCENARIOS.at(argv[1])(), 0;
    }
    // Whatever the caller has set, the tests choose. This process reads its own level at its first line.
    unsetenv("HILOG_FILE");
    setenv("HILOG_LEVEL", "E", 1);
    HiLogPrint(LOG_CORE, LOG_DEBUG, DOMAIN, "T", "below");
    unsetenv("HILOG_LEVEL");
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
