// The stand-ins for identity, reference counting and singletons, where the module's own tests do not cover them.
#include <array>
#include <atomic>
#include <cstdlib>
#include <future>
#include <gtest/gtest.h>
#include <memory>
#include <thread>

#include "ipc_skeleton.h"
#include "iremote_object.h"
#include "refbase.h"
#include "singleton.h"

namespace {

using namespace OHOS;

void SetTokenVariable(const char* text)
{
    setenv("OHOS_FULL_TOKEN_ID", text, 1); // NOLINT(concurrency-mt-unsafe)
}

uint64_t TokenOnOtherThread()
{
    return std::async(std::launch::async, IPCSkeleton::GetCallingFullTokenID).get();
}

TEST(Identity, IsReadFromTheEnvironmentOnTheFirstThreadOnly)
{
    SetTokenVariable("");
    EXPECT_EQ(IPCSkeleton::GetCallingFullTokenID(), 0x100000001);
    SetTokenVariable("12");
    EXPECT_EQ(TokenOnOtherThread(), 0x100000001);
    EXPECT_EQ(IPCSkeleton::GetCallingFullTokenID(), 12);
    EXPECT_EQ(TokenOnOtherThread(), 12);
}

TEST(Identity, IsANumberOf64Bits)
{
    const std::pair<const char*, uint64_t> cases[] = {
        {"0", 0},
        {"4294967296", 0x100000000},
        {"0x1fffffffF", 0x1FFFFFFFF},
        {"18446744073709551615", UINT64_MAX},
        {"0xffffffffffffffff", UINT64_MAX},
        // Not accepted: no rights.
        {"18446744073709551616", 0},
        {"0x10000000100000001", 0},
        {"0x", 0},
        {"4294967297\n", 0},
        {"system", 0},
    };
    testing::internal::CaptureStderr();
    for (const auto& [text, token] : cases) {
        SetTokenVariable(text);
        EXPECT_EQ(IPCSkeleton::GetCallingFullTokenID(), token) << text;
    }
    // Only the first is reported.
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "zelklogservice: OHOS_FULL_TOKEN_ID=\"18446744073709551616\": not a 64-bit token id; no rights\n");
}

struct Counted : IRemoteObject {
    std::shared_ptr<int> held;
};

struct Slow : DelayedSingleton<Slow> {
    Slow()
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        ++made;
    }
    static inline std::atomic<int> made{0};
};

// Runs work(0) to work(3), each in its own thread, and waits for all of them.
template <typename Work>
void InThreads(Work work)
{
    std::array<std::future<void>, 4> threads;
    for (size_t index = 0; index < threads.size(); ++index) {
        threads[index] = std::async(std::launch::async, work, index);
    }
}

TEST(RefBase, IsDestroyedOnceWhateverTheThreads)
{
    for (int round = 0; round < 200; ++round) {
        const auto held = std::make_shared<int>();
        sptr<Counted> strong(new Counted);
        strong->held = held;
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
        EXPECT_EQ(held.use_count(), 1);
        EXPECT_TRUE(weak.promote() == nullptr);
    }
}

TEST(DelayedSingleton, IsMadeOnceAndShared)
{
    InThreads([](size_t) { Slow::GetInstance(); });
    EXPECT_EQ(Slow::made, 1);
    EXPECT_EQ(Slow::GetInstance().use_count(), 2);
}

} // namespace
