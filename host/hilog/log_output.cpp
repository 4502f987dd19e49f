#include "log_output.h"

#include <algorithm>
#include <climits>
#include <ctime>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>

#include "host/utils/host_setting.h"
#include "line_header.h"

namespace OHOS::Host {

namespace {

constexpr const char* FILE_VARIABLE = "HILOG_FILE";
constexpr mode_t FILE_MODE = 0644;

// Turns every line feed from `start` on into "\n". Works from the end, so that a long text is moved only once.
void EscapeLineFeeds(std::string& text, size_t start)
{
    const auto count = std::count(text.begin() + static_cast<std::ptrdiff_t>(start), text.end(), '\n');
    size_t source = text.size();
    text.resize(text.size() + static_cast<size_t>(count));
    for (size_t target = text.size(); target != source;) {
        const char character = text[--source];
        text[--target] = character == '\n' ? 'n' : character;
        if (character == '\n') {
            text[--target] = '\\';
        }
    }
}

} // namespace

LogOutput::LogOutput()
{
    tzset(); // After this localtime_r does not read TZ, which only the first thread may do.
    const std::string_view name = Setting(FILE_VARIABLE);
    if (name.empty()) {
        return;
    }
    // O_NONBLOCK: opening a pipe that has no reader yet fails instead of blocking the program.
    const int file = open(name.data(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, FILE_MODE);
    if (file < 0) {
        ReportSetting(FILE_VARIABLE, name, "cannot be opened; lines go to standard error");
    } else {
        descriptor_ = file;
        struct stat status {};
        isRegularFile_ = fstat(file, &status) == 0 && S_ISREG(status.st_mode);
    }
}

int LogOutput::Write(std::string& line, Deadline deadline)
{
    EscapeLineFeeds(line, TIME_STAMP_SIZE);
    line += '\n';
    const size_t size = line.size();
    const size_t lost = lost_;
    const std::string report = lost == 0 ? "" : LossReport(lost);
    line.insert(0, report);
    const size_t written = isRegularFile_ ? WriteToFile(descriptor_, line) : WriteUntil(descriptor_, line, deadline);
    if (written > 0) {
        isBrokenOff_ = line[written - 1] != '\n';
    }
    if (written >= report.size()) {
        lost_ -= lost;
    }
    if (written < line.size()) {
        CountLoss();
        return -1;
    }
    return static_cast<int>(std::min<size_t>(size, INT_MAX));
}

std::string LogOutput::LossReport(size_t lost)
{
    std::string report;
    AppendHeader(report, LOG_WARN, 0, "HILOG");
    report += std::to_string(lost) + " lines were lost\n";
    Stamp(report.data());
    return isBrokenOff_ ? '\n' + report : report;
}

} // namespace OHOS::Host
