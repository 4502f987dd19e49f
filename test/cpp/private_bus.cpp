#include "private_bus.h"

#include <algorithm>
#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdexcept>
#include <string_view>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include "dbus_names.h"
#include "log_service_proxy.h"

namespace OHOS::Host {

using namespace std::chrono_literals;

Process::Process(const std::string& command)
{
    const pid_t test = getpid();
    pid_ = fork();
    if (pid_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() == test) {
            execl("/bin/sh", "sh", "-c", ("exec " + command).c_str(), nullptr);
        }
        _exit(EXIT_FAILURE);
    }
}

Process::~Process()
{
    Signal(SIGKILL);
    Wait();
}

void Process::Signal(int signal) const
{
    if (pid_ > 0) {
        kill(pid_, signal);
    }
}

int Process::Wait()
{
    int status = 0;
    const bool hasEnded = pid_ > 0 && waitpid(std::exchange(pid_, 0), &status, 0) > 0;
    return hasEnded && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool Eventually(const std::function<bool()>& condition)
{
    for (int tries = 0; tries < 1000; ++tries) {
        if (condition()) {
            return true;
        }
        std::this_thread::sleep_for(10ms);
    }
    return false;
}

BusFolder::BusFolder() : path(mkdtemp((testing::TempDir() + "zelk-bus-XXXXXX").data())) {}

BusFolder::~BusFolder()
{
    std::filesystem::remove_all(path);
}

std::shared_ptr<BusPool> PoolOf(const BusFolder& folder)
{
    return std::make_shared<BusPool>(folder.address, [] {});
}

PrivateBus::PrivateBus(const std::string& command)
{
    const std::string services = (folder.path / "services").string();
    std::filesystem::create_directory(services);
    std::ofstream(folder.path / "conf") << "<busconfig><type>session</type><listen>" << folder.address << "</listen>"
                                        << "<servicedir>" << services << "</servicedir><policy context='default'>"
                                        << "<allow own='*'/><allow send_destination='*'/>"
                                        << "<allow receive_sender='*'/></policy></busconfig>";
    if (!command.empty()) {
        std::ofstream(services + "/dev.zelk.LogService.service")
            << "[D-BUS Service]\nName=" << SERVICE_NAME << "\nExec=/usr/bin/env " << command << "\n";
    }
    daemon = std::make_unique<Process>("dbus-daemon --nofork --config-file=" + folder.path.string() + "/conf");
    std::unique_ptr<BusConnection> connection;
    EXPECT_TRUE(Eventually(
        [&] { return BusConnection::Open(folder.address, std::chrono::steady_clock::now() + 1s, connection) == 0; }));
}

Proxy PrivateBus::Find(std::chrono::steady_clock::duration limit) const
{
    return LogServiceProxy::Find(pool, limit);
}

Proxy PrivateBus::WaitForService() const
{
    Proxy proxy;
    if (!Eventually([&] { return (proxy = Find()) != nullptr; })) {
        throw std::runtime_error("no service");
    }
    return proxy;
}

PlayedBus::PlayedBus(std::function<void(sd_bus_message* call)> onCall)
    : onCall_(std::move(onCall)), listening_(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0))
{
    sockaddr_un address = {AF_UNIX, {}};
    (folder.path / "bus").string().copy(address.sun_path, sizeof(address.sun_path) - 1);
    constexpr int BACKLOG = 16;
    EXPECT_EQ(bind(listening_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    EXPECT_EQ(listen(listening_, BACKLOG), 0);
    thread_ = std::thread([this] { Serve(); });
}

PlayedBus::~PlayedBus()
{
    isEnding_ = true;
    thread_.join();
    close(listening_);
}

void PlayedBus::ReplyError(sd_bus_message* call, const char* sender, const char* name)
{
    sd_bus_message* raw = nullptr;
    sd_bus_message_new_method_errorf(call, &raw, name, "-");
    const BusMessage answer(raw);
    Send(raw, sender);
}

void PlayedBus::Flood(sd_bus_message* call)
{
    // The signal F of the interface a.b at the path /, 64 bytes.
    constexpr std::string_view SIGNAL("l\4\1\1\0\0\0\0\1\0\0\0\x2a\0\0\0"
                                      "\1\1o\0\1\0\0\0/\0\0\0\0\0\0\0"
                                      "\2\1s\0\3\0\0\0a.b\0\0\0\0\0"
                                      "\3\1s\0\1\0\0\0F\0\0\0\0\0\0\0",
                                      64);
    constexpr int MANY = 1000;
    std::string signals;
    for (int i = 0; i < MANY; ++i) {
        signals += SIGNAL;
    }
    pollfd client = {sd_bus_get_fd(sd_bus_message_get_bus(call)), POLLOUT, 0};
    size_t sent = 0;
    while (poll(&client, 1, -1) > 0 && (client.revents & (POLLHUP | POLLERR)) == 0) {
        const ssize_t more = send(client.fd, signals.data() + sent, signals.size() - sent, MSG_NOSIGNAL);
        sent = (sent + std::max<ssize_t>(more, 0)) % signals.size();
    }
}

Proxy PlayedBus::Find(std::chrono::steady_clock::duration limit) const
{
    Proxy proxy = LogServiceProxy::Find(pool_, limit);
    if (proxy == nullptr) {
        throw std::runtime_error("no service");
    }
    return proxy;
}

void PlayedBus::Send(sd_bus_message* message, const char* sender)
{
    EXPECT_GE(sd_bus_message_set_sender(message, sender), 0);
    sd_bus_send(nullptr, message, nullptr); // The client may be gone.
}

void PlayedBus::Serve()
{
    while (!isEnding_) {
        Accept();
        for (const BusHandle& client : clients_) {
            sd_bus_message* raw = nullptr;
            while (sd_bus_process(client.get(), &raw) > 0) {
                const BusMessage message(std::exchange(raw, nullptr));
                OnMessage(message.get());
            }
        }
        std::this_thread::sleep_for(1ms);
    }
    clients_.clear();
}

void PlayedBus::Accept()
{
    const int socket = accept4(listening_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (socket < 0) {
        return;
    }
    sd_bus* raw = nullptr;
    sd_bus_new(&raw);
    BusHandle client(raw);
    EXPECT_TRUE(sd_bus_set_fd(raw, socket, socket) >= 0 && sd_bus_set_server(raw, 1, {}) >= 0 &&
                sd_bus_start(raw) >= 0);
    clients_.push_back(std::move(client));
    ++connections;
}

void PlayedBus::OnMessage(sd_bus_message* message) const
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

} // namespace OHOS::Host
