// Desktop only: writing to a descriptor whose reader may have stopped reading.
#ifndef HOST_DESKTOP_WRITE_UNTIL_H
#define HOST_DESKTOP_WRITE_UNTIL_H

#include <chrono>
#include <cstddef>
#include <string_view>

namespace OHOS::Host {

using Deadline = std::chrono::steady_clock::time_point;

// Long for a reader that reads, short for a program that is kept from its work.
constexpr std::chrono::milliseconds LONGEST_WAIT_FOR_READER{100};

// Writes `text` to `descriptor`, with one write(2) where that takes it at once, and waits for room until `deadline`;
// what needs no waiting is written after the deadline too. Returns how many bytes were written: fewer than all when the
// time is over or the descriptor takes no more. Whoever shares the descriptor does not find it non-blocking, and no
// SIGPIPE is raised.
size_t WriteUntil(int descriptor, std::string_view text, Deadline deadline);

// The same for a regular file, which has no reader that could be late.
size_t WriteToFile(int descriptor, std::string_view text);

} // namespace OHOS::Host

#endif // HOST_DESKTOP_WRITE_UNTIL_H
