#include "host_setting.h"

#include <cstdlib>
#include <string>
#include <unistd.h>

#include "write_whole.h"

namespace OHOS::Host {

std::string_view Setting(const char* name)
{
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nothing in this library changes it.
    return value == nullptr ? std::string_view() : std::string_view(value);
}

bool ReportSetting(const char* name, std::string_view value, const char* consequence)
{
    std::string line = std::string("zelklogservice: ") + name + "=\"";
    for (const char character : value) {
        line += character == '\n' ? ' ' : character;
    }
    line += std::string("\": ") + consequence + "\n";
    // A standard error that takes nothing leaves nobody to tell.
    const BrokenPipeGuard guard;
    static_cast<void>(WriteWhole(STDERR_FILENO, line));
    return true;
}

} // namespace OHOS::Host
