#include "setting_source.h"

#include <atomic>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "dbus_library.h"
#include "host/utils/host_setting.h"
#include "proxy_source.h"

namespace OHOS::Host {

namespace {

constexpr const char* SERVICE_VARIABLE = "ZELK_LOG_SERVICE";
constexpr const char* SESSION_VARIABLE = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char* SYSTEM_VARIABLE = "DBUS_SYSTEM_BUS_ADDRESS";
constexpr const char* SYSTEM_ADDRESS = "unix:path=/run/dbus/system_bus_socket";

// The address of a bus and the variable that it comes from; empty if there is none.
struct BusSetting {
    const char* variable = SERVICE_VARIABLE;
    std::string address;
};

// `path` as a value in a D-Bus address.
std::string Escaped(std::string_view path)
{
    constexpr std::string_view PLAIN = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_/.";
    constexpr std::string_view HEX = "0123456789abcdef";
    std::string escaped;
    for (const char character : path) {
        if (PLAIN.find(character) != std::string_view::npos) {
            escaped += character;
        } else {
            const auto code = static_cast<unsigned char>(character);
            escaped += {'%', HEX[code >> 4U], HEX[code & 0xFU]};
        }
    }
    return escaped;
}

// Finds the bus as libsystemd does.
BusSetting ReadBus(std::string_view service)
{
    if (service == "session") {
        const std::string_view address = Setting(SESSION_VARIABLE);
        const std::string_view folder = Setting("XDG_RUNTIME_DIR");
        if (address.empty() && !folder.empty()) {
            return {SESSION_VARIABLE, "unix:path=" + Escaped(folder) + "/bus"};
        }
        return {SESSION_VARIABLE, std::string(address)};
    }
    if (service == "system") {
        const std::string_view address = Setting(SYSTEM_VARIABLE);
        return {SYSTEM_VARIABLE, std::string(address.empty() ? SYSTEM_ADDRESS : address)};
    }
    return {SERVICE_VARIABLE, std::string(service)};
}

struct ServiceSetting {
    const std::string service = std::string(Setting(SERVICE_VARIABLE));
    const BusSetting bus = ReadBus(service);
    const bool isEmbedded = service.empty() || service == "embedded";
    const bool hasBus = !isEmbedded && service != "none" && !bus.address.empty();
};

void ReportOnce(const char* variable, const std::string& value, const std::string& why)
{
    static std::atomic<bool> isReported{false};
    if (!isReported.exchange(true)) {
        ReportSetting(variable, value, (why + "; no service").c_str());
    }
}

void ReportBus(const BusSetting& bus)
{
    ReportOnce(bus.variable, bus.address,
               bus.variable == SERVICE_VARIABLE
                   ? "not embedded, session, system, none or a D-Bus address that is accepted"
                   : "not a D-Bus address that is accepted");
}

// Whether libsystemd may be asked for a bus at `address`; it checks the grammar itself. `unixexec:` starts a program,
// which no time limit would end.
bool IsAccepted(const std::string& address)
{
    return address.find(':') != std::string::npos && (";" + address).find(";unixexec:") == std::string::npos;
}

const ServiceSetting* ReadSetting()
{
    const auto* setting = new ServiceSetting;
    if (setting->hasBus && !IsAccepted(setting->bus.address)) {
        ReportBus(setting->bus);
    }
    return setting;
}

// Read while the library is loaded: later, another thread may be changing the environment. Never destroyed: workers may
// outlive static objects.
const ServiceSetting& g_setting = *ReadSetting();

// Empty when the source cannot be created now.
ProxySource MakeSource()
{
    const auto& [service, bus, isEmbedded, hasBus] = g_setting;
    if (isEmbedded) {
        return [embedded = MakeReferenceService()](std::string&) {
            return embedded;
        };
    }
    if (!hasBus || !IsAccepted(bus.address)) {
        return [why = service == "none" ? "the log service is switched off (ZELK_LOG_SERVICE=none)"
                      : hasBus          ? "the address of the bus is not accepted"
                                        : "there is no address of the bus"](std::string& whyNot) {
            whyNot = why;
            return nullptr;
        };
    }
    std::string error;
    ProxySource source = OpenDbusLibrary(
        bus.address, [] { ReportBus(g_setting.bus); }, error);
    if (!source) {
        ReportOnce(SERVICE_VARIABLE, service, error);
    }
    return source;
}

// The source, once it has been created.
const ProxySource* SourceOfSetting()
{
    static std::atomic<const ProxySource*> made{nullptr};
    static std::mutex mutex;
    const ProxySource* source = made.load(std::memory_order_acquire);
    if (source == nullptr) {
        const std::lock_guard<std::mutex> lock(mutex);
        source = made.load(std::memory_order_relaxed);
        if (ProxySource fresh; source == nullptr && (fresh = MakeSource())) {
            source = new ProxySource(std::move(fresh));
            made.store(source, std::memory_order_release);
        }
    }
    return source;
}

} // namespace

sptr<LogService> ProxyOfSetting(std::string& whyNot)
{
    const ProxySource* source = SourceOfSetting();
    if (source == nullptr) {
        whyNot = "the D-Bus library cannot be opened";
        return nullptr;
    }
    return (*source)(whyNot);
}

} // namespace OHOS::Host
