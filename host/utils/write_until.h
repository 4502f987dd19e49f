// Desktop only: writing to a descriptor whose reader may have stopped reading.
#ifndef HOST_UTILS_WRITE_UNTIL_H
#define HOST_UTILS_WRITE_UNTIL_H

#include <chrono>
#include <cstddef>
#include <string_view>

#include "deadline.h"

namespace OHOS::Host {

// Long for a reader that is reading, short for a program that has to wait.
constexpr std::chrono::milliseconds LONGEST_WAIT_FOR_READER{100};

// Writes `text` to `descriptor`, with a single write(2) if that takes all of it, and waits for room until `deadline`;
// what can be written without waiting is written even after the deadline. Returns the number of bytes written: fewer
// than all when the time is up or the descriptor takes no more. The descriptor stays blocking for the processes that
// share it, and no SIGPIPE is raised.
size_t WriteUntil(int descriptor, std::string_view text, Deadline deadline);

// The same for a regular file, which has no reader to wait for.
size_t WriteToFile(int descriptor, std::string_view text);

} // namespace OHOS::Host

#endif // HOST_UTILS_WRITE_UNTIL_H
