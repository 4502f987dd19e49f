#include "caller.h"

#include <algorithm>
#include <mutex>
#include <thread>
#include <vector>

#include "host/ipc/calling_token.h"

namespace OHOS::Host {

namespace {

struct Given {
    std::thread::id giver;
    std::optional<uint64_t> token;
};

// Never destroyed: workers may outlive static objects.
struct Callers {
    std::mutex mutex;         // Guards everything below, and the order of changes.
    std::vector<Given> given; // The last call of each thread that lives, in the order of the calls.
};

Callers& TheCallers()
{
    static auto* const callers = new Callers;
    return *callers;
}

// With the lock held.
void RemoveOwn(std::vector<Given>& given)
{
    const auto isOwn = [](const Given& one) {
        return one.giver == std::this_thread::get_id();
    };
    given.erase(std::remove_if(given.begin(), given.end(), isOwn), given.end());
}

} // namespace

void SetCaller(std::optional<uint64_t> token)
{
    Callers& callers = TheCallers();
    const std::lock_guard<std::mutex> lock(callers.mutex);
    RemoveOwn(callers.given);
    callers.given.push_back({std::this_thread::get_id(), token});
    SetCallingToken(token);
}

void ForgetCallerOfThisThread()
{
    Callers& callers = TheCallers();
    const std::lock_guard<std::mutex> lock(callers.mutex);
    RemoveOwn(callers.given);
    SetCallingToken(callers.given.empty() ? std::nullopt : callers.given.back().token);
}

} // namespace OHOS::Host
