// HiLog's formats: printf's conversions with privacy markers.
#ifndef HOST_HILOG_FORMAT_H
#define HOST_HILOG_FORMAT_H

#include <cstdarg>
#include <string>

namespace OHOS::Host {

// Appends to `out` what vsnprintf prints of `format` without its markers: {public} and {private} directly after a
// percent sign that begins a conversion. %m prints the error that errno holds at the call. `args` is used up; va_end
// remains the caller's task.
//
// False, whatever was appended, when vsnprintf refuses the format or an argument, and for two conversions that are not
// supported: %n, which would store something, and two percent signs with anything between them, such as %5%.
bool AppendFormat(std::string& out, const char* format, std::va_list args);

} // namespace OHOS::Host

#endif // HOST_HILOG_FORMAT_H
