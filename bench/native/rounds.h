// Interleaved measuring: both sides of a comparison take turns in short batches, so that whatever else the machine does
// affects both alike.
#ifndef BENCH_NATIVE_ROUNDS_H
#define BENCH_NATIVE_ROUNDS_H

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace Bench {

constexpr double BATCH_NANOSECONDS = 2e6;

// One where `run.mjs --once` asks for it.
inline int Rounds()
{
    const char* once = std::getenv("ZELK_BENCH_ONCE"); // NOLINT(concurrency-mt-unsafe): there is one thread.
    return once == nullptr || *once == '\0' ? 41 : 1;
}

// Makes the compiler believe that somebody reads what `value` points to.
inline void Keep(const void* value)
{
    __asm__ volatile("" : : "r"(value) : "memory");
}

// The time that this thread has run: waiting for a processor does not count.
inline double ThreadNanoseconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

template <typename Run>
double BatchNanoseconds(long times, Run& run)
{
    const double start = ThreadNanoseconds();
    for (long i = 0; i < times; ++i) {
        run();
    }
    return ThreadNanoseconds() - start;
}

// How often `run` fits into a batch; warms it up on the way.
template <typename Run>
long TimesPerBatch(Run& run)
{
    for (long times = 1;; times *= 2) {
        const double took = BatchNanoseconds(times, run);
        if (took >= BATCH_NANOSECONDS / 2) {
            return times;
        }
    }
}

// Prints one line of JSON: the nanoseconds per unit of either side in every round. A run of `ours` does `oursUnits`
// units of work, one of `theirs` `theirsUnits`.
template <typename Ours, typename Theirs>
void Compare(const char* measure, Ours ours, double oursUnits, Theirs theirs, double theirsUnits)
{
    const long oursTimes = TimesPerBatch(ours);
    const long theirsTimes = TimesPerBatch(theirs);
    const auto oursTime = [&] {
        return BatchNanoseconds(oursTimes, ours) / (static_cast<double>(oursTimes) * oursUnits);
    };
    const auto theirsTime = [&] {
        return BatchNanoseconds(theirsTimes, theirs) / (static_cast<double>(theirsTimes) * theirsUnits);
    };
    std::printf("{\"measure\":\"%s\",\"rounds\":[", measure);
    for (int round = 0, rounds = Rounds(); round < rounds; ++round) {
        // In this order, a steady drift affects both sides alike.
        double sums[2] = {oursTime(), theirsTime()};
        sums[1] += theirsTime();
        sums[0] += oursTime();
        std::printf("%s[%.3f,%.3f]", round == 0 ? "" : ",", sums[0] / 2, sums[1] / 2);
    }
    std::printf("]}\n");
}

} // namespace Bench

#endif // BENCH_NATIVE_ROUNDS_H
