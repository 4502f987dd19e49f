#ifndef TEST_UNITS_IN_THREADS_H
#define TEST_UNITS_IN_THREADS_H

#include <array>
#include <future>

namespace ZelkTest {

// Runs work(0) to work(COUNT - 1), each in its own thread, and waits for all of them.
template <size_t COUNT = 4, typename Work>
void InThreads(Work work)
{
    std::array<std::future<void>, COUNT> threads;
    for (size_t index = 0; index < threads.size(); ++index) {
        threads[index] = std::async(std::launch::async, work, index);
    }
}

} // namespace ZelkTest

#endif // TEST_UNITS_IN_THREADS_H
