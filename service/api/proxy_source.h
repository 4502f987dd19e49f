// Desktop only: makes Client::GetProxy return another log service, for tests and for programs that bring their own.
#ifndef SERVICE_API_PROXY_SOURCE_H
#define SERVICE_API_PROXY_SOURCE_H

#include <functional>

#include "zelk_service_api/i_zelk_log_service.h"

namespace OHOS::Host {

using ProxySource = std::function<sptr<HiviewDFX::IZelkLogService>()>;

// From now on every Client::GetProxy of the process returns the result of `source`, even null, instead of following
// ZELK_LOG_SERVICE. An empty function undoes this. `source` is called on any thread, also on several at once.
__attribute__((visibility("default"))) void SetProxySource(ProxySource source);

// A new reference service, in its initial state.
__attribute__((visibility("default"))) sptr<HiviewDFX::IZelkLogService> MakeReferenceService();

} // namespace OHOS::Host

#endif // SERVICE_API_PROXY_SOURCE_H
