#include "service_stack.h"

#include <algorithm>
#include <utility>

#include "service/api/proxy_source.h"

namespace OHOS::Host {

ServiceStack& ServiceStack::Instance()
{
    static auto* const instance = new ServiceStack; // Workers may outlive static objects.
    return *instance;
}

bool ServiceStack::Push(const sptr<HandlerService>& service)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (!entries_.empty() && !entries_.back().service->Home()->IsCurrent()) {
        return false;
    }
    if (hasEnded_) {
        service->End();
    }
    entries_.push_back({service, true});
    Apply();
    return true;
}

bool ServiceStack::Remove(const sptr<HandlerService>& service)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = Find(service);
    if (found == entries_.end()) {
        return true; // Its environment has ended.
    }
    if (found + 1 != entries_.end()) {
        return false;
    }
    entries_.pop_back();
    Apply();
    service->End();
    return true;
}

void ServiceStack::SetPresent(const sptr<HandlerService>& service, bool isPresent)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = Find(service);
    if (found != entries_.end()) {
        found->isPresent = isPresent;
        Apply();
    }
}

void ServiceStack::RemoveAllOf(const Environment& environment)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto firstRemoved = std::stable_partition(entries_.begin(), entries_.end(), [&](const Entry& entry) {
        return entry.service->Home().get() != &environment;
    });
    const std::vector<Entry> removed(firstRemoved, entries_.end());
    entries_.erase(firstRemoved, entries_.end());
    // First, so that a caller whose call ends finds the service of the process.
    Apply();
    std::for_each(removed.begin(), removed.end(), [](const Entry& entry) { entry.service->End(); });
}

void ServiceStack::EndAll()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    hasEnded_ = true;
    for (const Entry& entry : entries_) {
        entry.service->End();
    }
}

bool ServiceStack::ClaimExit()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return !std::exchange(isExitClaimed_, true);
}

std::vector<ServiceStack::Entry>::iterator ServiceStack::Find(const sptr<HandlerService>& service)
{
    return std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) { return entry.service == service; });
}

void ServiceStack::Apply() const
{
    if (entries_.empty()) {
        SetProxySource({});
        return;
    }
    const Entry& inForce = entries_.back();
    SetProxySource([service = inForce.isPresent ? inForce.service : nullptr](std::string& whyNot) {
        if (service == nullptr) {
            whyNot = "the log service of the test has left";
        }
        return service;
    });
}

} // namespace OHOS::Host
