// Desktop only: writing a text to a descriptor that may be a pipe.
#ifndef HOST_DESKTOP_WRITE_WHOLE_H
#define HOST_DESKTOP_WRITE_WHOLE_H

#include <csignal>
#include <string_view>

namespace OHOS::Host {

// Writes all of `text`, with one write(2) where the descriptor takes it at once. Goes on after partial writes and
// interruptions, and waits while a non-blocking descriptor is full. False when the descriptor takes no more.
bool WriteWhole(int descriptor, std::string_view text);

// While it lives, a write to a pipe whose reader has gone fails on this thread and does not end the process. Not needed
// for a regular file.
class BrokenPipeGuard {
public:
    BrokenPipeGuard();
    ~BrokenPipeGuard();
    BrokenPipeGuard(const BrokenPipeGuard&) = delete;
    BrokenPipeGuard& operator=(const BrokenPipeGuard&) = delete;

private:
    bool blocking_ = false;
    sigset_t previous_{};
};

} // namespace OHOS::Host

#endif // HOST_DESKTOP_WRITE_WHOLE_H
