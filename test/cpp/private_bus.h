// Buses for tests: a D-Bus daemon with the processes that it starts, and a bus simulated by the test itself.
#ifndef TEST_CPP_PRIVATE_BUS_H
#define TEST_CPP_PRIVATE_BUS_H

#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <sys/types.h>
#include <thread>
#include <vector>

#include "bus_pool.h"
#include "zelk_service_api/i_zelk_log_service.h"

namespace OHOS::Host {

// A child process that runs a shell command. It ends with this object or with the test, even if the test is killed.
class Process {
public:
    explicit Process(const std::string& command);
    Process(const Process&) = delete;
    ~Process();

    void Signal(int signal) const;
    // Its exit status, or -1 when a signal ended it.
    int Wait();

private:
    pid_t pid_ = 0;
};

bool Eventually(const std::function<bool()>& condition);

// A temporary folder for a bus's socket.
struct BusFolder {
    BusFolder();
    BusFolder(const BusFolder&) = delete;
    ~BusFolder();

    const std::filesystem::path path;
    const std::string address = "unix:path=" + (path / "bus").string();
};

using Proxy = sptr<HiviewDFX::IZelkLogService>;

std::shared_ptr<BusPool> PoolOf(const BusFolder& folder);

// A D-Bus daemon.
class PrivateBus {
public:
    // The bus runs `command` to start the service.
    explicit PrivateBus(const std::string& command = "");

    Proxy Find(std::chrono::steady_clock::duration limit = std::chrono::seconds(20)) const;
    // For a service that has just been started.
    Proxy WaitForService() const;

    const BusFolder folder;
    const std::shared_ptr<BusPool> pool = PoolOf(folder);
    std::unique_ptr<Process> daemon;
};

// A bus simulated by the test: the other end of the connections of clients in this process. It answers the calls that
// clients make to the bus at the start, and leaves all others to the test.
class PlayedBus {
public:
    static constexpr const char* BUS = "org.freedesktop.DBus";
    static constexpr const char* OWNER = ":1.1"; // Of the service's name.

    // `onCall` is called in the thread of this object.
    explicit PlayedBus(std::function<void(sd_bus_message* call)> onCall);
    PlayedBus(const PlayedBus&) = delete;
    ~PlayedBus();

    // Answers `call` as if the answer came from `sender`.
    template <typename... Values>
    static void Reply(sd_bus_message* call, const char* sender, const char* types, Values... values)
    {
        sd_bus_message* raw = nullptr;
        sd_bus_message_new_method_return(call, &raw);
        const BusMessage answer(raw);
        sd_bus_message_append(raw, types, values...);
        Send(raw, sender);
    }
    static void ReplyError(sd_bus_message* call, const char* sender, const char* name);

    // Sends a signal to the sender of `call`.
    template <typename... Values>
    static void Signal(sd_bus_message* call, const char* sender, const char* interface, const char* name,
                       const char* types, Values... values)
    {
        sd_bus_message* raw = nullptr;
        sd_bus_message_new_signal(sd_bus_message_get_bus(call), &raw, "/", interface, name);
        const BusMessage signal(raw);
        sd_bus_message_append(raw, types, values...);
        Send(raw, sender);
    }

    // Sends signals to the sender of `call`, faster than it can process them, until it is gone.
    static void Flood(sd_bus_message* call);

    // Throws when it is not found.
    Proxy Find(std::chrono::steady_clock::duration limit = std::chrono::seconds(20)) const;

    const BusFolder folder;
    std::atomic<bool> isOwned = true;
    std::atomic<int> connections = 0;

private:
    static void Send(sd_bus_message* message, const char* sender);
    void Serve();
    void Accept();
    void OnMessage(sd_bus_message* message) const;

    const std::function<void(sd_bus_message* call)> onCall_;
    const int listening_;
    const std::shared_ptr<BusPool> pool_ = PoolOf(folder);
    std::vector<BusHandle> clients_; // Used by the thread only.
    std::atomic<bool> isEnding_ = false;
    std::thread thread_;
};

} // namespace OHOS::Host

#endif // TEST_CPP_PRIVATE_BUS_H
