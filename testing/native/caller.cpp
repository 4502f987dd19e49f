#include "caller.h"

#include <algorithm>
#include <mutex>
#include <thread>
#include <vector>

#include "host/ipc/calling_token.h"
#include "host/utils/thread_safety.h"

namespace OHOS::Host {

namespace {

struct Given {
    std::thread::id giver;
    std::optional<uint64_t> token;
};

// Never destroyed: workers may outlive static objects.
struct Callers {
    std::mutex mutex; // Guards the order of changes, too.
    // The last call of each live thread, in the order of the calls.
    std::vector<Given> given ZELK_GUARDED_BY(mutex);
};

Callers& TheCallers()
{
    static auto* const callers = new Callers;
    return *callers;
}

void RemoveOwn(Callers& callers) ZELK_REQUIRES(callers.mutex)
{
    const auto isOwn = [](const Given& one) {
        return one.giver == std::this_thread::get_id();
    };
    callers.given.erase(std::remove_if(callers.given.begin(), callers.given.end(), isOwn), callers.given.end());
}

} // namespace

void SetCaller(std::optional<uint64_t> token)
{
    Callers& callers = TheCallers();
    const std::lock_guard<std::mutex> lock(callers.mutex);
    RemoveOwn(callers);
    callers.given.push_back({std::this_thread::get_id(), token});
    SetCallingToken(token);
}

void ForgetCallerOfThisThread()
{
    Callers& callers = TheCallers();
    const std::lock_guard<std::mutex> lock(callers.mutex);
    RemoveOwn(callers);
    SetCallingToken(callers.given.empty() ? std::nullopt : callers.given.back().token);
}

} // namespace OHOS::Host
