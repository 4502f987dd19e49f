// Buses for tests: a D-Bus daemon, the processes on it, and a bus simulated by the test itself.
#ifndef TEST_UNITS_PRIVATE_BUS_H
#define TEST_UNITS_PRIVATE_BUS_H

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <memory>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

#include "service/dbus/dbus_names.h"
#include "service/dbus/log_service_proxy.h"

namespace OHOS::Host {

using namespace std::chrono_literals;
using Proxy = sptr<HiviewDFX::IZelkLogService>;

// Quoted for a shell, whatever the path of the checkout.
inline std::string Quoted(const std::string& path)
{
    return "'" + std::regex_replace(path, std::regex("'"), R"('"'"')") + "'";
}

inline bool Eventually(const std::function<bool()>& condition, int tries = 2000)
{
    while (!condition() && --tries > 0) {
        std::this_thread::sleep_for(10ms);
    }
    return tries > 0;
}

// A child process that runs a shell command. It ends with this object or with the test, even if the test is killed.
class Process {
public:
    explicit Process(const std::string& command) : pid_(fork())
    {
        if (pid_ == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            prctl(PR_CAPBSET_DROP, CAP_NET_ADMIN); // Otherwise root's sockets hold whole answers.
            execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
        }
    }
    Process(const Process&) = delete;
    ~Process()
    {
        End(SIGKILL);
    }

    // Its exit status, after `signal`, which is sent again and again, unless it is 0; or -1 when a signal ended it, or
    // nothing did for 20 s.
    int End(int signal = 0)
    {
        int status = 0;
        if (pid_ > 0 &&
            !Eventually([&] { return kill(pid_, signal) == 0 && waitpid(pid_, &status, WNOHANG) == pid_; })) {
            kill(pid_, SIGKILL);
            waitpid(pid_, &status, 0);
        }
        return std::exchange(pid_, -1) > 0 && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    // The most memory that it has used, in megabytes.
    long Peak() const
    {
        std::stringstream status;
        status << std::ifstream("/proc/" + std::to_string(pid_) + "/status").rdbuf();
        return std::stol(status.str().substr(status.str().find("VmHWM:") + 6)) * 1024 / 1'000'000;
    }

private:
    pid_t pid_;
};

inline Proxy FindOver(const std::shared_ptr<BusPool>& pool, LogServiceProxy::Duration limit)
{
    std::string whyNot;
    return LogServiceProxy::Find(pool, limit, whyNot);
}

// A bus with a socket in a temporary folder.
struct Bus {
    Bus() = default;
    Bus(const Bus&) = delete;
    ~Bus()
    {
        std::filesystem::remove_all(folder);
    }

    Proxy Find(LogServiceProxy::Duration limit = 20s) const
    {
        return FindOver(pool, limit);
    }

    const std::filesystem::path folder = mkdtemp((testing::TempDir() + "zelk-bus-XXXXXX").data());
    const std::string address = "unix:path=" + (folder / "bus").string();
    const std::shared_ptr<BusPool> pool = std::make_shared<BusPool>(address, [] {});
};

// A D-Bus daemon.
struct PrivateBus : Bus {
    explicit PrivateBus(const std::string& configuration = ZELK_BUS_CONFIGURATION)
        : daemon("exec dbus-daemon --nofork --nopidfile --config-file=" + Quoted(configuration) +
                 " --address=" + address + " 2>/dev/null") // It remarks on the limits of this machine.
    {
        std::unique_ptr<BusConnection> connection;
        EXPECT_TRUE(Eventually(
            [&] { return BusConnection::Open(address, std::chrono::steady_clock::now() + 1s, connection) == 0; }));
    }

    // For a service that has just been started.
    Proxy WaitForService() const
    {
        Proxy proxy;
        if (!Eventually([&] { return (proxy = Find()) != nullptr; })) {
            throw std::runtime_error("no service");
        }
        return proxy;
    }

    const Process daemon;
};

// A bus simulated by the test: the other end of the connections of its clients. It answers the calls that clients make
// to the bus at the start, and leaves all others to the test.
class PlayedBus : public Bus {
public:
    static constexpr const char* BUS = "org.freedesktop.DBus";
    static constexpr const char* OWNER = ":1.1"; // Of the service's name.

    // `onCall` is called in the thread of this object. Without it the bus lets clients connect, and says nothing.
    explicit PlayedBus(std::function<void(sd_bus_message* call)> onCall) : onCall_(std::move(onCall))
    {
        sockaddr_un name = {AF_UNIX, {}};
        (folder / "bus").string().copy(name.sun_path, sizeof(name.sun_path) - 1);
        EXPECT_EQ(bind(listening_, reinterpret_cast<const sockaddr*>(&name), sizeof(name)), 0);
        EXPECT_EQ(listen(listening_, SOMAXCONN), 0);
        thread_ = std::thread([this] { Serve(); });
    }
    ~PlayedBus()
    {
        isEnding_ = true;
        thread_.join();
        close(listening_);
    }

    // Answers `call` as if the answer came from `sender`.
    template <typename... Values>
    static void Reply(sd_bus_message* call, const char* sender, const char* types, Values... values)
    {
        sd_bus_message* answer = nullptr;
        sd_bus_message_new_method_return(call, &answer);
        sd_bus_message_append(answer, types, values...);
        Send(BusMessage(answer), sender);
    }

    static void ReplyError(sd_bus_message* call, const char* sender, const char* name)
    {
        sd_bus_message* answer = nullptr;
        sd_bus_message_new_method_errorf(call, &answer, name, "-");
        Send(BusMessage(answer), sender);
    }

    // Tells the sender of `call`, as if `sender` did, that the service's name has changed hands.
    static BusMessage Notify(sd_bus_message* call, const char* sender, const char* newOwner)
    {
        sd_bus_message* signal = nullptr;
        sd_bus_message_new_signal(sd_bus_message_get_bus(call), &signal, "/", BUS, "NameOwnerChanged");
        sd_bus_message_append(signal, "sss", SERVICE_NAME, OWNER, newOwner);
        return Send(BusMessage(signal), sender);
    }

    // Sends signals to the sender of `call`, faster than it can process them, until it is gone.
    static void Flood(sd_bus_message* call)
    {
        const BusMessage signal = Notify(call, OWNER, OWNER);
        sd_bus* client = sd_bus_message_get_bus(call);
        while (sd_bus_send(client, signal.get(), nullptr) >= 0 && sd_bus_flush(client) >= 0) {
        }
    }

    std::atomic<const char*> greeting = nullptr; // Sent in place of a bus's own.
    std::atomic<bool> isOwned = true;
    std::atomic<int> connections = 0; // That were made.
    std::atomic<size_t> open = 0;     // Those of them that are left.

private:
    static BusMessage Send(BusMessage message, const char* sender)
    {
        EXPECT_GE(sd_bus_message_set_sender(message.get(), sender), 0);
        sd_bus_send(nullptr, message.get(), nullptr); // The client may be gone.
        return message;
    }

    void Serve()
    {
        std::vector<BusHandle> clients;
        while (onCall_ && !isEnding_) {
            const int socket = accept4(listening_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
            if (socket >= 0 && greeting != nullptr) { // It stays open: the client reads until it knows.
                send(socket, greeting, std::strlen(greeting), MSG_NOSIGNAL);
            } else if (socket >= 0) {
                clients.push_back(Greet(socket));
                ++connections;
            }
            for (const BusHandle& client : clients) {
                sd_bus_message* raw = nullptr;
                while (sd_bus_process(client.get(), &raw) > 0) {
                    const BusMessage message(std::exchange(raw, nullptr));
                    OnMessage(message.get());
                }
            }
            const auto isClosed = [](const BusHandle& client) {
                return sd_bus_is_open(client.get()) <= 0;
            };
            clients.erase(std::remove_if(clients.begin(), clients.end(), isClosed), clients.end());
            open = clients.size();
            std::this_thread::sleep_for(1ms);
        }
    }

    static BusHandle Greet(int socket)
    {
        sd_bus* raw = nullptr;
        sd_bus_new(&raw);
        BusHandle client(raw);
        EXPECT_TRUE(sd_bus_set_fd(raw, socket, socket) >= 0 && sd_bus_set_server(raw, 1, {}) >= 0 &&
                    sd_bus_start(raw) >= 0);
        return client;
    }

    void OnMessage(sd_bus_message* message) const
    {
        if (message == nullptr || sd_bus_message_is_method_call(message, nullptr, nullptr) <= 0) {
            return;
        }
        const std::string_view method = sd_bus_message_get_member(message);
        if (method == "Hello") {
            Reply(message, BUS, "s", ":1.2");
        } else if (method == "AddMatch") {
            Reply(message, BUS, "");
        } else if (method == "GetNameOwner" && isOwned) {
            Reply(message, BUS, "s", OWNER);
        } else if (method == "GetNameOwner") {
            ReplyError(message, BUS, SD_BUS_ERROR_NAME_HAS_NO_OWNER);
        } else {
            onCall_(message);
        }
    }

    const std::function<void(sd_bus_message* call)> onCall_;
    const int listening_ = socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    std::atomic<bool> isEnding_ = false;
    std::thread thread_;
};

} // namespace OHOS::Host

#endif // TEST_UNITS_PRIVATE_BUS_H
