// Where the client library finds the log service.
#include <cstdlib>
#include <gtest/gtest.h>

#include "zelk_service_api/client.h"
#include "zelk_service_api/proxy_source.h"

namespace OHOS::HiviewDFX {
namespace {

// The process's status: 0 when there is a service that answers, 1 when the proxy is null.
void ExitAsTheServiceIsFound(const char* setting)
{
    setenv("ZELK_LOG_SERVICE", setting, 1); // NOLINT(concurrency-mt-unsafe)
    Client client;
    const sptr<IZelkLogService> first = client.GetProxy();
    setenv("ZELK_LOG_SERVICE", "read only once", 1); // NOLINT(concurrency-mt-unsafe)
    const sptr<IZelkLogService> second = Client().GetProxy();
    bool status = false;
    std::exit(first && second && first->HandleModemLogSwitch(true, status) == 0 && // NOLINT(concurrency-mt-unsafe)
                      second->GetModemLogStatus(status) == 0 && status
                  ? 0
                  : 1);
}

TEST(ServiceSettingTest, Values)
{
    struct Case {
        const char* setting;
        int status;
        const char* errors;
    };
    const Case cases[] = {
        {"", 0, "^$"},
        {"embedded", 0, "^$"},
        {"none", 1, "^$"},
        {"Session", 1, "^[^\n]*ZELK_LOG_SERVICE=\"Session\"[^\n]*no service\n$"},
        {"unix:path=/nonexistent", 1, "^$"},
    };
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    for (const Case& test : cases) {
        EXPECT_EXIT(ExitAsTheServiceIsFound(test.setting), testing::ExitedWithCode(test.status), test.errors)
            << test.setting;
    }
}

TEST(ServiceSettingTest, AProxySourceStandsInForTheSetting)
{
    Client client;
    Host::SetProxySource([] { return nullptr; });
    EXPECT_EQ(client.GetProxy(), nullptr);
    Host::SetProxySource({});
    EXPECT_NE(client.GetProxy(), nullptr);
}

TEST(ServiceSettingTest, DeathIsToldToThoseWhoAsked)
{
    Client client;
    int first = 0;
    int second = 0;
    std::function<void()> notFirst = [] {
        FAIL() << "was replaced";
    };
    std::function<void()> tellFirst = [&] {
        ++first;
    };
    std::function<void()> tellSecond = [&] {
        ++second;
    };
    std::function<void()> nothing;
    client.RegisterRemotedDied("a", notFirst);
    client.RegisterRemotedDied("a", tellFirst);
    client.RegisterRemotedDied("b", tellSecond);
    client.RegisterRemotedDied("c", nothing);
    client.OnRemoteDied(nullptr);
    EXPECT_EQ(first * 10 + second, 11);
}

} // namespace
} // namespace OHOS::HiviewDFX
