// HiLog's formats: printf's conversions with privacy markers.
#ifndef HOST_HILOG_FORMAT_H
#define HOST_HILOG_FORMAT_H

#include <cstdarg>
#include <memory_resource>
#include <string>

namespace OHOS::Host {

// Appends `format` to `out` with its conversions filled in from `args`, which the caller still has to end.
//
// A conversion is a percent sign, a marker ({public} or {private}, or none), and what C and POSIX know behind the
// percent sign of printf: flags, width, precision, length, and one of d i o u x X a A e E f F g G c C s S p n m %. A
// public one is printed as printf prints it, any other takes its arguments and prints "<private>". Different from
// printf:
// - a null string prints "(null)" whatever the precision;
// - %n stores nothing;
// - numbered arguments (%1$d) are not known;
// - what is no complete conversion, or one that printf refuses, is printed as it stands.
// %m prints the error that errno holds at the call.
void AppendFormat(std::pmr::string& out, const char* format, std::va_list args);

} // namespace OHOS::Host

#endif // HOST_HILOG_FORMAT_H
