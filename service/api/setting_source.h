// The log service that the environment names.
#ifndef SERVICE_API_SETTING_SOURCE_H
#define SERVICE_API_SETTING_SOURCE_H

#include "zelk_service_api/i_zelk_log_service.h"

namespace OHOS::Host {

// The log service that ZELK_LOG_SERVICE named when this library was loaded, or null when it cannot be reached now. A
// value that is not accepted means that there is no service, and is reported once on standard error. May be called from
// any thread.
sptr<HiviewDFX::IZelkLogService> ProxyOfSetting();

} // namespace OHOS::Host

#endif // SERVICE_API_SETTING_SOURCE_H
