// Log lines. `bench_log suppressed`: a line below the level, against an empty call; HILOG_LEVEL=X. `bench_log FILE`:
// a line that is written, against spdlog's basic file logger; HILOG_LEVEL=I and HILOG_FILE name the module's file.
#include <memory>
#include <string_view>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>
#pragma GCC diagnostic pop

#include "empty_log.h"
#include "rounds.h"

namespace {

constexpr unsigned int DOMAIN = 0xD002D19;
constexpr const char* FORMAT = "HandleAsyncWork: workName = [%{public}s], code = %{public}d";
constexpr const char* NAME = "GetModemLogStatus";
constexpr int CODE = 42;
constexpr int LINES = 100;

template <typename Line>
auto Repeat(Line line)
{
    return [line] {
        for (int i = 0; i < LINES; ++i) {
            line();
        }
    };
}

void CompareSuppressed()
{
    Bench::Compare(
        "log-suppressed", Repeat([] { HiLogPrint(LOG_CORE, LOG_ERROR, DOMAIN, "ZELK_SERVICE", FORMAT, NAME, CODE); }),
        LINES, Repeat([] { EmptyLogPrint(LOG_CORE, LOG_ERROR, DOMAIN, "ZELK_SERVICE", FORMAT, NAME, CODE); }), LINES);
}

void CompareWritten(const char* file)
{
    const auto logger = spdlog::basic_logger_mt("ZELK_SERVICE", file, true);
    logger->set_pattern("%m-%d %H:%M:%S.%e %5P %5t %L C02d19/%n: %v");
    logger->flush_on(spdlog::level::trace);
    Bench::Compare("log-file",
                   Repeat([] { HiLogPrint(LOG_CORE, LOG_ERROR, DOMAIN, "ZELK_SERVICE", FORMAT, NAME, CODE); }), LINES,
                   Repeat([&] { logger->error("HandleAsyncWork: workName = [{}], code = {}", NAME, CODE); }), LINES);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && std::string_view(argv[1]) == "suppressed") {
        CompareSuppressed();
        return 0;
    }
    if (argc == 2) {
        CompareWritten(argv[1]);
        return 0;
    }
    std::fprintf(stderr, "Usage: bench_log suppressed | FILE\n");
    return 2;
}
