#include "zelk_service_api/client.h"

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "host/utils/thread_safety.h"
#include "proxy_source.h"
#include "service/reference/reference_service.h"
#include "setting_source.h"

namespace OHOS {

namespace {

using HiviewDFX::IZelkLogService;

// Set by a test or a program in place of the setting. Never destroyed: workers may outlive static objects.
struct Override {
    std::mutex mutex;
    Host::ProxySource source ZELK_GUARDED_BY(mutex);
};

Override& TheOverride()
{
    static auto* const theOverride = new Override;
    return *theOverride;
}

Host::ProxySource OverridingSource()
{
    Override& current = TheOverride();
    const std::lock_guard<std::mutex> lock(current.mutex);
    return current.source;
}

} // namespace

void Host::SetProxySource(ProxySource source)
{
    Override& current = TheOverride();
    const std::lock_guard<std::mutex> lock(current.mutex);
    current.source.swap(source);
}

sptr<Host::LogService> Host::FindLogService(std::string& whyNot)
{
    const ProxySource source = OverridingSource();
    return source ? source(whyNot) : ProxyOfSetting(whyNot);
}

sptr<Host::LogService> Host::MakeReferenceService()
{
    return new ReferenceService;
}

namespace HiviewDFX {

sptr<IZelkLogService> Client::GetProxy()
{
    std::string whyNot;
    return Host::FindLogService(whyNot);
}

void Client::OnRemoteDied(const wptr<IRemoteObject>&)
{
    Callbacks callbacks;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        callbacks = callbacks_;
    }
    for (const auto& [name, callback] : callbacks) {
        if (callback) {
            callback();
        }
    }
}

void Client::RegisterRemotedDied(std::string name, std::function<void()>& callback)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    callbacks_.insert_or_assign(std::move(name), callback);
}

} // namespace HiviewDFX

} // namespace OHOS
