#include "write_whole.h"

#include <cerrno>
#include <ctime>
#include <poll.h>
#include <unistd.h>

namespace OHOS::Host {

namespace {

sigset_t BrokenPipeSignal()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    return signals;
}

// True when a write that has just failed is worth another try.
bool WaitForRoom(int descriptor)
{
    if (errno == EINTR) {
        return true;
    }
    if (errno != EAGAIN && errno != EWOULDBLOCK) {
        return false;
    }
    pollfd room{descriptor, POLLOUT, 0};
    return poll(&room, 1, -1) >= 0 || errno == EINTR;
}

} // namespace

bool WriteWhole(int descriptor, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = write(descriptor, text.data(), text.size());
        if (written > 0) {
            text.remove_prefix(static_cast<size_t>(written));
        } else if (written == 0 || !WaitForRoom(descriptor)) {
            return false;
        }
    }
    return true;
}

BrokenPipeGuard::BrokenPipeGuard()
{
    // A program that ignores or handles the signal is safe already. One that is pending already changes nothing when it
    // is raised again, and is the program's own.
    struct sigaction action {};
    sigset_t pending;
    if (sigaction(SIGPIPE, nullptr, &action) != 0 || action.sa_handler != SIG_DFL || sigpending(&pending) != 0 ||
        sigismember(&pending, SIGPIPE) != 0) {
        return;
    }
    const sigset_t signals = BrokenPipeSignal();
    blocking_ = pthread_sigmask(SIG_BLOCK, &signals, &previous_) == 0;
}

BrokenPipeGuard::~BrokenPipeGuard()
{
    if (!blocking_) {
        return;
    }
    const sigset_t signals = BrokenPipeSignal();
    const timespec now{0, 0};
    while (sigtimedwait(&signals, nullptr, &now) < 0 && errno == EINTR) {
    }
    pthread_sigmask(SIG_SETMASK, &previous_, nullptr);
}

} // namespace OHOS::Host
