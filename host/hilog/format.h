// HiLog's formats: printf's conversions with privacy markers.
#ifndef HOST_HILOG_FORMAT_H
#define HOST_HILOG_FORMAT_H

#include <cstdarg>
#include <string>

namespace OHOS::Host {

// Appends `format` to `out` with its conversions filled in from `args`; va_end remains the caller's task.
//
// A conversion is a percent sign, a marker ({public}, {private}, or none), and anything that may follow the percent
// sign in printf. A public conversion is printed by snprintf; any other takes its arguments and prints "<private>".
// Differences from printf:
// - a null string prints "(null)", whatever the precision;
// - %n stores nothing;
// - numbered arguments (%1$d) are not supported;
// - an incomplete conversion, or one that snprintf refuses, is printed as it is.
// %m prints the error that errno holds at the call.
void AppendFormat(std::string& out, const char* format, std::va_list args);

} // namespace OHOS::Host

#endif // HOST_HILOG_FORMAT_H
