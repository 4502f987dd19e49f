// The stand-ins for identity, reference counting and singletons, where the module's own tests do not cover them.
#include <array>
#include <atomic>
#include <cstdlib>
#include <future>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>

#include "host/utils/host_setting.h"
#include "in_threads.h"
#include "ipc_skeleton.h"
#include "iremote_object.h"
#include "refbase.h"
#include "singleton.h"

namespace {

using namespace OHOS;

TEST(Identity, IsANumberOf64BitsOfTheEnvironmentReadOnTheFirstThreadOnly)
{
    const std::pair<const char*, uint64_t> cases[] = {
        {"", 0x100000001},
        {"4294967296", 0x100000000},
        {"0xffffffffffffffff", UINT64_MAX},
        // Not accepted: no rights.
        {"18446744073709551616", 0},
        {"0x", 0},
        {"4294967297\n", 0},
    };
    testing::internal::CaptureStderr();
    for (const auto& [text, token] : cases) {
        const auto onOtherThread = [] {
            return std::async(std::launch::async, IPCSkeleton::GetCallingFullTokenID).get();
        };
        const uint64_t before = IPCSkeleton::GetCallingFullTokenID();
        setenv("OHOS_FULL_TOKEN_ID", text, 1);
        EXPECT_EQ(onOtherThread(), before) << text;
        EXPECT_EQ(IPCSkeleton::GetCallingFullTokenID(), token) << text;
        EXPECT_EQ(onOtherThread(), token) << text;
    }
    // Only the first is reported.
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "zelklogservice: OHOS_FULL_TOKEN_ID=\"18446744073709551616\": not a 64-bit token id; no rights\n");
}

TEST(Setting, IsReportedWithoutWhatATerminalObeys)
{
    const std::string shown = " ~ü\u00a0\u200d\u2010\u2029\u202f\u2065\u206a😀\xe2\xa0\xc3";
    // NOLINTNEXTLINE(misc-misleading-bidirectional)
    const std::string obeyed = "\n\x1b\x1f\x7f\u0080\u009f\u061c\u200e\u200f\u202a\u202e\u2066\u2069\x9b";
    testing::internal::CaptureStderr();
    Host::ReportSetting("NAME", shown + obeyed, "refused");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "zelklogservice: NAME=\"" + shown +
                  R"(\u000a\u001b\u001f\u007f\u0080\u009f\u061c\u200e\u200f\u202a\u202e\u2066\u2069\u009b)" +
                  "\": refused\n");
}

struct Counted : IRemoteObject {
    std::shared_ptr<int> held;
};

TEST(RefBase, IsDestroyedOnceWhateverTheThreads)
{
    for (int round = 0; round < 10; ++round) {
        const auto held = std::make_shared<int>();
        sptr<Counted> strong(new Counted);
        strong->held = held;
        std::array<sptr<Counted>, 4> copies{strong, strong, strong, std::move(strong)};
        ZelkTest::InThreads([&copies](size_t index) {
            for (int i = 0; i < 100'000; ++i) {
                const sptr<Counted> another = copies[index];
            }
            copies[index] = nullptr;
        });
        EXPECT_EQ(held.use_count(), 1);
    }
}

struct Slow : DelayedSingleton<Slow> {
    Slow()
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        ++made;
    }
    static inline std::atomic<int> made{0};
};

TEST(DelayedSingleton, IsMadeOnceAndShared)
{
    ZelkTest::InThreads([](size_t) { Slow::GetInstance(); });
    EXPECT_EQ(Slow::made, 1);
    EXPECT_EQ(Slow::GetInstance().use_count(), 2);
}

} // namespace
