// The module's log lines. Every line goes to HiLog under the module's domain; the tag names the layer that writes it.
#ifndef ZELKLOGSERVICE_COMMON_MODULE_LOG_H
#define ZELKLOGSERVICE_COMMON_MODULE_LOG_H

#include "hilog/log.h"

namespace OHOS::HiviewDFX {

constexpr unsigned int MODULE_LOG_DOMAIN = 0xD002D19;
// The JavaScript-facing functions, the async frame and the data helpers.
constexpr const char* TAG_SERVICE = "ZELK_SERVICE";
// The service client and the executor contexts.
constexpr const char* TAG_FRAMEWORK = "FRAMEWORK";
// Replies to protocol-data requests.
constexpr const char* TAG_PROTOCOL = "PROTOCOL";

} // namespace OHOS::HiviewDFX

// Macros, because the compiler checks a format against its arguments only where HiLogPrint itself is called with it.
// The format is HiLog's: printf conversions, each marked %{public} or %{private}. The empty string before it rejects
// anything but a literal: a text known only at run time is an argument of "%{public}s".
#define ZELK_LOG(level, tag, ...) HiLogPrint(LOG_CORE, level, OHOS::HiviewDFX::MODULE_LOG_DOMAIN, tag, "" __VA_ARGS__)

// Lines under TAG_SERVICE, which most lines have.
#define ZELK_ERROR(...) ZELK_LOG(LOG_ERROR, OHOS::HiviewDFX::TAG_SERVICE, __VA_ARGS__)
#define ZELK_INFO(...) ZELK_LOG(LOG_INFO, OHOS::HiviewDFX::TAG_SERVICE, __VA_ARGS__)
#define ZELK_DEBUG(...) ZELK_LOG(LOG_DEBUG, OHOS::HiviewDFX::TAG_SERVICE, __VA_ARGS__)

#endif // ZELKLOGSERVICE_COMMON_MODULE_LOG_H
