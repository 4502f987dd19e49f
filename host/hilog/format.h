// HiLog's formats: printf's conversions with privacy markers.
#ifndef HOST_HILOG_FORMAT_H
#define HOST_HILOG_FORMAT_H

#include <cstdarg>
#include <string>

namespace OHOS::Host {

// Appends `format` to `out` with its conversions filled in from `args`, which the caller still has to end.
//
// A conversion is a percent sign, a marker ({public} or {private}, or none), and what may follow the percent sign in
// printf. A public one is printed by snprintf, any other takes its arguments and prints "<private>". Different from
// printf:
// - a null string prints "(null)" whatever the precision;
// - %n stores nothing;
// - numbered arguments (%1$d) are not known;
// - what is not a complete conversion, or one that snprintf refuses, is printed as it is.
// %m prints the error that errno holds at the call.
void AppendFormat(std::string& out, const char* format, std::va_list args);

} // namespace OHOS::Host

#endif // HOST_HILOG_FORMAT_H
