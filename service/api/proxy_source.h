// Desktop only: makes Client::GetProxy return another log service, for tests and for programs that bring their own.
#ifndef SERVICE_API_PROXY_SOURCE_H
#define SERVICE_API_PROXY_SOURCE_H

#include <functional>
#include <string>

#include "operations.h"

namespace OHOS::Host {

// The log service, or null with the reason in `whyNot`.
using ProxySource = std::function<sptr<LogService>(std::string& whyNot)>;

// From now on every Client::GetProxy of the process returns the result of `source`, even null, instead of following
// ZELK_LOG_SERVICE. An empty function undoes this. `source` is called on any thread, even on several at once.
__attribute__((visibility("default"))) void SetProxySource(ProxySource source);

// What Client::GetProxy returns, with the reason in `whyNot` when it is null. Any thread.
__attribute__((visibility("default"))) sptr<LogService> FindLogService(std::string& whyNot);

// A new reference service, in its initial state.
__attribute__((visibility("default"))) sptr<LogService> MakeReferenceService();

} // namespace OHOS::Host

#endif // SERVICE_API_PROXY_SOURCE_H
