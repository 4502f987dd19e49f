// Test support: a D-Bus daemon of the test's own, and the processes on it.
#ifndef TEST_CPP_PRIVATE_BUS_H
#define TEST_CPP_PRIVATE_BUS_H

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

#include "bus_connection.h"

namespace OHOS::Test {

// A child process; killed at the end if it still runs, also when the test itself is.
class Process {
public:
    explicit Process(std::vector<std::string> words)
    {
        std::vector<char*> arguments;
        arguments.reserve(words.size() + 1);
        for (std::string& word : words) {
            arguments.push_back(word.data());
        }
        arguments.push_back(nullptr);
        pid_ = fork();
        if (pid_ == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            execvp(arguments[0], arguments.data());
            _exit(127);
        }
    }
    ~Process()
    {
        Signal(SIGKILL);
        Wait();
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    void Signal(int signal) const
    {
        if (pid_ > 0) {
            kill(pid_, signal);
        }
    }
    // Its exit status, or -1 when a signal ended it.
    int Wait()
    {
        int status = 0;
        if (pid_ <= 0 || waitpid(std::exchange(pid_, 0), &status, 0) < 0 || !WIFEXITED(status)) {
            return -1;
        }
        return WEXITSTATUS(status);
    }

private:
    pid_t pid_ = 0;
};

inline bool Eventually(const std::function<bool()>& condition)
{
    for (int attempt = 0; attempt < 1000; ++attempt) {
        if (condition()) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

// The daemon, in a folder of its own. It always has the same address, also when it is stopped and started again.
class PrivateBus {
public:
    PrivateBus()
    {
        std::string folder = std::filesystem::temp_directory_path() / "zelk-bus-XXXXXX";
        folder_ = mkdtemp(folder.data());
        std::filesystem::create_directory(folder_ / "services");
        std::ofstream(folder_ / "bus.conf")
            << "<busconfig><type>session</type><listen>" << Address() << "</listen><servicedir>"
            << (folder_ / "services").string() << "</servicedir><policy context='default'><allow send_destination='*'/>"
            << "<allow receive_sender='*'/><allow own='*'/></policy></busconfig>";
        Start();
    }
    ~PrivateBus()
    {
        Stop();
        std::filesystem::remove_all(folder_);
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    void Start()
    {
        daemon_ =
            std::make_unique<Process>(std::vector<std::string>{"dbus-daemon", "--nofork", "--nopidfile", "--nosyslog",
                                                               "--config-file=" + (folder_ / "bus.conf").string()});
        Eventually([this] {
            return Host::BusConnection::Open(Address(), std::chrono::steady_clock::now() + std::chrono::seconds(1)) !=
                   nullptr;
        });
    }
    void Stop()
    {
        daemon_.reset();
        std::filesystem::remove(folder_ / "bus");
    }
    std::string Address() const
    {
        return "unix:path=" + (folder_ / "bus").string();
    }
    const std::filesystem::path& Folder() const
    {
        return folder_;
    }
    // Makes `shell`, a shell command, what the daemon starts when somebody asks for `name`.
    void Activate(const std::string& name, const std::string& shell) const
    {
        std::ofstream(folder_ / "start") << shell << "\n";
        std::ofstream(folder_ / "services" / (name + ".service"))
            << "[D-BUS Service]\nName=" << name << "\nExec=/bin/sh " << (folder_ / "start").string() << "\n";
    }

private:
    std::filesystem::path folder_;
    std::unique_ptr<Process> daemon_;
};

} // namespace OHOS::Test

#endif // TEST_CPP_PRIVATE_BUS_H
