// The log service that the environment names.
#ifndef SERVICE_API_SETTING_SOURCE_H
#define SERVICE_API_SETTING_SOURCE_H

#include <string>

#include "operations.h"

namespace OHOS::Host {

// The log service that ZELK_LOG_SERVICE named when this library was loaded, or null when it cannot be reached now, with
// the reason in `whyNot`. A value that is not accepted means that there is no service, and is reported once on standard
// error. May be called from any thread.
sptr<LogService> ProxyOfSetting(std::string& whyNot);

} // namespace OHOS::Host

#endif // SERVICE_API_SETTING_SOURCE_H
