#include "caller.h"

#include <mutex>
#include <thread>

#include "calling_token.h"

namespace OHOS::Host {

namespace {

std::mutex g_mutex;      // Guards the order of changes.
std::thread::id g_giver; // The thread whose token is in force; none while it is the environment's.

} // namespace

void SetCaller(std::optional<uint64_t> token)
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    g_giver = token ? std::this_thread::get_id() : std::thread::id();
    SetCallingToken(token);
}

void ForgetCallerOfThisThread()
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    if (g_giver == std::this_thread::get_id()) {
        g_giver = std::thread::id();
        SetCallingToken(std::nullopt);
    }
}

} // namespace OHOS::Host
