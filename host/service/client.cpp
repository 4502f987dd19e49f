#include "zelk_service_api/client.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <string_view>
#include <utility>

#include "dbus_library.h"
#include "host_setting.h"
#include "reference_service.h"
#include "zelk_service_api/proxy_source.h"

namespace OHOS {

namespace {

using HiviewDFX::IZelkLogService;

constexpr const char* SERVICE_VARIABLE = "ZELK_LOG_SERVICE";

sptr<IZelkLogService> NoService()
{
    return nullptr;
}

Host::ProxySource Embedded()
{
    return [service = Host::MakeReferenceService()] {
        return service;
    };
}

// One part of a D-Bus address: TRANSPORT:KEY=VALUE and more of these, of a transport that libsystemd knows.
bool IsBusAddressPart(std::string_view part)
{
    constexpr std::array<std::string_view, 4> TRANSPORTS = {"unix", "tcp", "unixexec", "x-machine-unix"};
    const size_t colon = part.find(':');
    const size_t equals = part.find('=');
    return std::find(TRANSPORTS.begin(), TRANSPORTS.end(), part.substr(0, colon)) != TRANSPORTS.end() &&
           equals != std::string_view::npos && equals > colon + 1 && equals + 1 < part.size();
}

// Parts with a semicolon between them, to be tried in turn.
bool IsBusAddress(std::string_view address)
{
    while (true) {
        const size_t end = address.find(';');
        if (!IsBusAddressPart(address.substr(0, end))) {
            return false;
        }
        if (end == std::string_view::npos) {
            return true;
        }
        address.remove_prefix(end + 1);
    }
}

Host::ProxySource SourceOfSetting()
{
    const std::string_view value = Host::Setting(SERVICE_VARIABLE);
    if (value.empty() || value == "embedded") {
        return Embedded();
    }
    if (value == "none") {
        return NoService;
    }
    if (value != "session" && value != "system" && !IsBusAddress(value)) {
        Host::ReportSetting(SERVICE_VARIABLE, value,
                            "not embedded, session, system, none or a D-Bus address; no service");
        return NoService;
    }
    std::string error;
    Host::ProxySource source = Host::OpenDbusLibrary(std::string(value), error);
    if (!source) {
        Host::ReportSetting(SERVICE_VARIABLE, value, (error + "; no service").c_str());
        return NoService;
    }
    return source;
}

// What a test or a program has put in the place of the setting. Never destroyed: workers may outlive static objects.
struct Override {
    std::mutex mutex;
    Host::ProxySource source;
};

Override& TheOverride()
{
    static auto* const theOverride = new Override;
    return *theOverride;
}

} // namespace

void Host::SetProxySource(ProxySource source)
{
    Override& current = TheOverride();
    const std::lock_guard<std::mutex> lock(current.mutex);
    current.source.swap(source);
}

sptr<IZelkLogService> Host::MakeReferenceService()
{
    return new ReferenceService;
}

namespace HiviewDFX {

sptr<IZelkLogService> Client::GetProxy()
{
    Override& current = TheOverride();
    std::unique_lock<std::mutex> lock(current.mutex);
    const Host::ProxySource source = current.source;
    lock.unlock();
    if (source) {
        return source();
    }
    static const auto* const ofSetting = new Host::ProxySource(SourceOfSetting());
    return (*ofSetting)();
}

void Client::OnRemoteDied(const wptr<IRemoteObject>&)
{
    std::unique_lock<std::mutex> lock(mutex_);
    const std::map<std::string, std::function<void()>> callbacks = callbacks_;
    lock.unlock();
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
