#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include "ipc_skeleton.h"
#include "iremote_object.h"
#include "refbase.h"
#include "singleton.h"
#include "tokenid_kit.h"

using OHOS::IPCSkeleton;
using OHOS::sptr;
using OHOS::wptr;
using OHOS::Security::AccessToken::TokenIdKit;

namespace {

class Counted : public OHOS::IRemoteObject {
public:
    Counted()
    {
        ++alive;
    }
    Counted(const Counted& other) : RefBase(other), IRemoteObject(other)
    {
        ++alive;
    }
    Counted& operator=(const Counted&) = delete;
    ~Counted() override
    {
        --alive;
    }

    static inline std::atomic<int> alive{0};
};

// Runs work(0) to work(3) in threads of their own.
template <typename Work>
void InThreads(Work work)
{
    std::vector<std::thread> threads;
    for (size_t index = 0; index < 4; ++index) {
        threads.emplace_back(work, index);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST(RefBase, LivesAsLongAsAStrongPointer)
{
    sptr<Counted> first(new Counted);
    const wptr<OHOS::IRemoteObject> weak = sptr<OHOS::IRemoteObject>(first);
    sptr<OHOS::IRemoteObject> second = first;
    EXPECT_EQ(first->GetSptrRefCount(), 2);
    EXPECT_TRUE(second == sptr<OHOS::IRemoteObject>(first));

    sptr<Counted>& alias = first;
    first = alias;
    EXPECT_EQ(first->GetSptrRefCount(), 2);
    sptr<Counted> moved = std::move(first);
    EXPECT_TRUE(first == nullptr); // NOLINT(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
    EXPECT_EQ(moved->GetSptrRefCount(), 2);
    // A copy of the object has its own count.
    EXPECT_EQ(sptr<Counted>(new Counted(*moved))->GetSptrRefCount(), 1);

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

class Slow : public OHOS::DelayedSingleton<Slow> {
public:
    Slow()
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        ++made;
    }

    static inline std::atomic<int> made{0};
    int value = 0;
};

TEST(DelayedSingleton, IsMadeOnceAndShared)
{
    std::atomic<Slow*> seen{nullptr};
    InThreads([&seen](size_t) {
        const std::shared_ptr<Slow> instance = Slow::GetInstance();
        Slow* other = seen.exchange(instance.get());
        EXPECT_TRUE(other == nullptr || other == instance.get());
    });
    EXPECT_EQ(Slow::made, 1);
    EXPECT_EQ(Slow::GetInstance().use_count(), 2);
}

void SetToken(const char* text)
{
    if (text == nullptr) {
        unsetenv("OHOS_FULL_TOKEN_ID"); // NOLINT(concurrency-mt-unsafe)
    } else {
        setenv("OHOS_FULL_TOKEN_ID", text, 1); // NOLINT(concurrency-mt-unsafe)
    }
}

TEST(Identity, ComesFromTheEnvironmentAtEachCall)
{
    constexpr uint64_t system = 0x100000001;
    constexpr uint64_t most = UINT64_MAX;
    const std::vector<std::pair<const char*, uint64_t>> cases = {
        {nullptr, system},
        {"", system},
        {"0", 0},
        {"4294967296", 0x100000000},
        {"0x1fffffffF", 0x1FFFFFFFF},
        {"0x0", 0},
        {"00000000000000000000000012", 12},
        {"18446744073709551615", most},
        {"0xffffffffffffffff", most},
        // No numbers of 64 bits: no rights.
        {"18446744073709551616", 0},
        {"0x10000000100000001", 0},
        {"0X100000001", 0},
        {"0x", 0},
        {"x100000001", 0},
        {"100000001h", 0},
        {" 4294967297", 0},
        {"4294967297 ", 0},
        {"+4294967297", 0},
        {"-1", 0},
        {"0x-1", 0},
        {"0x+100000001", 0},
        {"0x 100000001", 0},
        {"0x0x100000001", 0},
        {"4294967297.0", 0},
        {"system", 0},
    };
    testing::internal::CaptureStderr();
    for (const auto& [text, token] : cases) {
        SetToken(text);
        EXPECT_EQ(IPCSkeleton::GetCallingFullTokenID(), token) << text;
    }
    SetToken(nullptr);
    // Only the first one that is not accepted is reported.
    const std::string report = testing::internal::GetCapturedStderr();
    EXPECT_EQ(report.find("zelklogservice: OHOS_FULL_TOKEN_ID=\"18446744073709551616\": "), 0U) << report;
    EXPECT_EQ(report.find('\n') + 1, report.size()) << report;
}

TEST(Identity, Bit32MakesASystemApplication)
{
    EXPECT_TRUE(TokenIdKit::IsSystemAppByFullTokenID(0x100000000));
    EXPECT_TRUE(TokenIdKit::IsSystemAppByFullTokenID(UINT64_MAX));
    EXPECT_FALSE(TokenIdKit::IsSystemAppByFullTokenID(0));
    EXPECT_FALSE(TokenIdKit::IsSystemAppByFullTokenID(~(uint64_t{1} << 32)));
}

} // namespace
