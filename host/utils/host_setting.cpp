#include "host_setting.h"

#include <chrono>
#include <cstdlib>
#include <string>
#include <string_view>
#include <unistd.h>

#include "write_until.h"

namespace OHOS::Host {

std::string_view Setting(const char* name)
{
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): see the header.
    return value == nullptr ? std::string_view() : std::string_view(value);
}

bool ReportSetting(const char* name, std::string_view value, const char* consequence)
{
    std::string line = std::string("zelklogservice: ") + name + "=\"";
    for (const char character : value) {
        line += character == '\n' ? ' ' : character;
    }
    line += std::string("\": ") + consequence + "\n";
    // If standard error cannot be written to, there is nowhere to report that.
    WriteUntil(STDERR_FILENO, line, std::chrono::steady_clock::now() + LONGEST_WAIT_FOR_READER);
    return true;
}

} // namespace OHOS::Host
