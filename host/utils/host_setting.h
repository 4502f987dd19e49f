// Desktop only: the environment variables that configure the stand-ins.
#ifndef HOST_UTILS_HOST_SETTING_H
#define HOST_UTILS_HOST_SETTING_H

#include <string_view>

namespace OHOS::Host {

// The variable's value now; empty when it is unset. To be called while a library is loaded, or on the process's first
// thread: Node.js changes the environment there, and no other thread may read it meanwhile. The view is valid until the
// environment changes.
__attribute__((visibility("default"))) std::string_view Setting(const char* name);

// Reports on standard error, in one line, that a variable's value is not accepted and what happens instead. Control
// characters of the value, which a terminal would obey, are shown in the form \u001b. Returns true, so that a static
// variable can make it happen once.
__attribute__((visibility("default"))) bool ReportSetting(const char* name, std::string_view value,
                                                          const char* consequence);

} // namespace OHOS::Host

#endif // HOST_UTILS_HOST_SETTING_H
