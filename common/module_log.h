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

// `format` is HiLog's: printf conversions, each marked %{public} or %{private}.
template <typename... Args>
void Log(LogLevel level, const char* tag, const char* format, Args... args)
{
    HiLogPrint(LOG_CORE, level, MODULE_LOG_DOMAIN, tag, format, args...);
}

// Lines under TAG_SERVICE, by far the most.
template <typename... Args>
void LogError(const char* format, Args... args)
{
    Log(LOG_ERROR, TAG_SERVICE, format, args...);
}

template <typename... Args>
void LogInfo(const char* format, Args... args)
{
    Log(LOG_INFO, TAG_SERVICE, format, args...);
}

template <typename... Args>
void LogDebug(const char* format, Args... args)
{
    Log(LOG_DEBUG, TAG_SERVICE, format, args...);
}

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_COMMON_MODULE_LOG_H
