#include "write_until.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace OHOS::Host {

namespace {

// While it lives, a write to a pipe whose reader is gone fails on this thread instead of ending the process.
class BrokenPipeGuard {
public:
    BrokenPipeGuard()
    {
        sigemptyset(&signal_);
        sigaddset(&signal_, SIGPIPE);
        // A program that ignores or handles the signal is already safe. A signal that is already pending is the
        // program's own, and raising it again changes nothing.
        struct sigaction action {};
        sigset_t pending;
        isBlocking_ = sigaction(SIGPIPE, nullptr, &action) == 0 && action.sa_handler == SIG_DFL &&
                      sigpending(&pending) == 0 && sigismember(&pending, SIGPIPE) == 0 &&
                      pthread_sigmask(SIG_BLOCK, &signal_, &previous_) == 0;
    }

    ~BrokenPipeGuard()
    {
        if (isBlocking_) {
            const timespec now{0, 0};
            sigtimedwait(&signal_, nullptr, &now);
            pthread_sigmask(SIG_SETMASK, &previous_, nullptr);
        }
    }

    BrokenPipeGuard(const BrokenPipeGuard&) = delete;
    BrokenPipeGuard& operator=(const BrokenPipeGuard&) = delete;

private:
    bool isBlocking_ = false;
    sigset_t signal_{};
    sigset_t previous_{};
};

// Writes some of the text without waiting, as write(2) does with a non-blocking descriptor.
using TryWrite = ssize_t (*)(int descriptor, std::string_view text);

ssize_t TryPlain(int descriptor, std::string_view text)
{
    return write(descriptor, text.data(), text.size());
}

ssize_t TrySocket(int descriptor, std::string_view text)
{
    return send(descriptor, text.data(), text.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
}

// A pipe that has room has room for this much.
ssize_t TryBlocking(int descriptor, std::string_view text)
{
    pollfd room{descriptor, POLLOUT, 0};
    if (poll(&room, 1, 0) == 0) {
        errno = EAGAIN;
        return -1;
    }
    return write(descriptor, text.data(), std::min<size_t>(text.size(), PIPE_BUF));
}

// Whether a write that failed may be tried again: after a signal, and when there is room before the deadline.
bool MayRetry(int error, int descriptor, Deadline deadline)
{
    if (error != EAGAIN) {
        return error == EINTR;
    }
    const auto left = TimeUntil<std::chrono::milliseconds>(deadline);
    pollfd room{descriptor, POLLOUT, 0};
    return left.count() > 0 && poll(&room, 1, static_cast<int>(left.count())) != 0;
}

size_t WriteBy(TryWrite tryWrite, int descriptor, std::string_view text, Deadline deadline)
{
    size_t written = 0;
    while (written < text.size()) {
        const ssize_t size = tryWrite(descriptor, text.substr(written));
        if (size > 0) {
            written += static_cast<size_t>(size);
        } else if (size == 0 || !MayRetry(errno, descriptor, deadline)) {
            break;
        }
    }
    return written;
}

// Opened each time: a descriptor that stays open would keep the pipe's reader from seeing the end of file.
size_t WriteToOwnDescription(int descriptor, std::string_view text, Deadline deadline)
{
    const std::string path = "/proc/self/fd/" + std::to_string(descriptor);
    const int own = open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (own < 0) { // Another user's, or the reader is gone.
        return WriteBy(TryBlocking, descriptor, text, deadline);
    }
    const size_t written = WriteBy(TryPlain, own, text, deadline);
    close(own);
    return written;
}

} // namespace

size_t WriteUntil(int descriptor, std::string_view text, Deadline deadline)
{
    struct stat status {};
    static_cast<void>(fstat(descriptor, &status)); // Where it fails, nothing can be written either.
    if (S_ISREG(status.st_mode)) {
        return WriteToFile(descriptor, text);
    }
    if (S_ISSOCK(status.st_mode)) {
        return WriteBy(TrySocket, descriptor, text, deadline);
    }
    const BrokenPipeGuard guard;
    if ((fcntl(descriptor, F_GETFL) & O_NONBLOCK) != 0) {
        return WriteBy(TryPlain, descriptor, text, deadline);
    }
    return WriteToOwnDescription(descriptor, text, deadline);
}

size_t WriteToFile(int descriptor, std::string_view text)
{
    return WriteBy(TryPlain, descriptor, text, Deadline());
}

} // namespace OHOS::Host
