#include <array>
#include <atomic>
#include <future>
#include <gtest/gtest.h>
#include <thread>

#include "ipc_skeleton.h"
#include "iremote_object.h"
#include "refbase.h"
#include "singleton.h"

using namespace OHOS;

// clang-format off
TEST(Identity, ComesFromTheEnvironmentAtEachCall)
{
    const std::pair<const char*, uint64_t> cases[] = {
        {"", 0x100000001}, {"0", 0}, {"4294967296", 0x100000000}, {"0x1fffffffF", 0x1FFFFFFFF}, {"0x0", 0},
        {"00000000000000000000000012", 12}, {"18446744073709551615", UINT64_MAX}, {"0xffffffffffffffff", UINT64_MAX},
        // No numbers of 64 bits.
        {"18446744073709551616", 0}, {"0x10000000100000001", 0}, {"0X100000001", 0}, {"x100000001", 0}, {"system", 0},
        {"0x+100000001", 0}, {"0x 100000001", 0}, {"0x0x100000001", 0}, {" 4294967297", 0}, {"4294967297h", 0},
    };
    testing::internal::CaptureStderr();
    for (const auto& [text, token] : cases) {
        setenv("OHOS_FULL_TOKEN_ID", text, 1); // NOLINT(concurrency-mt-unsafe)
        EXPECT_EQ(IPCSkeleton::GetCallingFullTokenID(), token) << text;
    }
    unsetenv("OHOS_FULL_TOKEN_ID"); // NOLINT(concurrency-mt-unsafe)
    EXPECT_EQ(IPCSkeleton::GetCallingFullTokenID(), 0x100000001);
    // Only the first one that is not accepted is reported.
    const std::string report = testing::internal::GetCapturedStderr();
    EXPECT_EQ(report.find("zelklogservice: OHOS_FULL_TOKEN_ID=\"18446744073709551616\": "), 0U) << report;
    EXPECT_EQ(report.find('\n') + 1, report.size()) << report;
}

struct Counted : IRemoteObject {
    Counted() { ++alive; }
    Counted(const Counted& other) : RefBase(other), IRemoteObject(other) { ++alive; }
    ~Counted() override { --alive; }
    static inline std::atomic<int> alive{0};
};

struct Slow : DelayedSingleton<Slow> {
    Slow() { std::this_thread::sleep_for(std::chrono::milliseconds(20)); ++made; }
    static inline std::atomic<int> made{0};
};

// Runs work(0) to work(3) in threads of their own, to their ends.
template <typename Work> void InThreads(Work work)
{
    std::future<void> threads[4];
    for (size_t index = 0; index < 4; ++index) { threads[index] = std::async(std::launch::async, work, index); }
}
// clang-format on

TEST(RefBase, LivesAsLongAsAStrongPointer)
{
    sptr<Counted> first(new Counted);
    const wptr<IRemoteObject> weak = sptr<IRemoteObject>(first);
    sptr<IRemoteObject> second = first;
    EXPECT_TRUE(second == sptr<IRemoteObject>(first));
    first = *&first;
    sptr<Counted> moved = std::move(first);
    EXPECT_TRUE(first == nullptr); // NOLINT(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
    EXPECT_EQ(moved->GetSptrRefCount(), 2);
    EXPECT_EQ(sptr<Counted>(new Counted(*moved))->GetSptrRefCount(), 1); // A copy of the object has its own count.
    moved = nullptr;
    EXPECT_EQ(weak.promote()->GetSptrRefCount(), 2);
    second = nullptr;
    EXPECT_TRUE(weak.promote() == nullptr);
    EXPECT_EQ(Counted::alive, 0);
    EXPECT_TRUE(wptr<Counted>().promote() == nullptr);
}

TEST(RefBase, IsDestroyedOnceWhateverTheThreads)
{
    for (int round = 0; round < 200; ++round) {
        sptr<Counted> strong(new Counted);
        const wptr<Counted> weak = strong;
        std::array<sptr<Counted>, 4> copies{strong, strong, strong, std::move(strong)};
        InThreads([&copies, &weak](size_t index) {
            wptr<Counted> other;
            other = weak;
            copies[index] = nullptr;
            for (int attempt = 0; attempt < 100; ++attempt) {
                const sptr<Counted> promoted = other.promote();
                EXPECT_TRUE(promoted == nullptr || promoted->GetSptrRefCount() >= 1);
            }
        });
        EXPECT_EQ(Counted::alive, 0);
        EXPECT_TRUE(weak.promote() == nullptr);
    }
}

TEST(DelayedSingleton, IsMadeOnceAndShared)
{
    std::array<Slow*, 4> seen{};
    InThreads([&seen](size_t index) { seen[index] = Slow::GetInstance().get(); });
    EXPECT_EQ(seen, (std::array<Slow*, 4>{seen[0], seen[0], seen[0], seen[0]}));
    EXPECT_EQ(Slow::made, 1);
    EXPECT_EQ(Slow::GetInstance().use_count(), 2);
}
