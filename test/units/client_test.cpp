// The service client: its own codes and lines, and the slots of the interfaces that it shares with the service.
#include <cstring>
#include <type_traits>

#include <gtest/gtest.h>

#include "client/zelk_log_service_client.h"
#include "host/hilog/capture.h"
#include "service/api/proxy_source.h"

namespace OHOS::HiviewDFX {

namespace {

using Texts = std::vector<std::string>;
using Codes = std::vector<int32_t>;

// The slots of virtual operations, counted from one. A member pointer to one holds the slot's offset, on some
// processors plus one.
template <typename... Operations>
std::vector<size_t> SlotsOf(Operations... operations)
{
    const auto slotOf = [](auto operation) {
        size_t pointer = 0;
        std::memcpy(&pointer, &operation, sizeof(pointer));
        return pointer / sizeof(void*) + 1;
    };
    return {slotOf(operations)...};
}

TEST(Client, HasThePlatformsBinaryInterface)
{
    using namespace Host::OperationRow;
    const std::vector<size_t> slots =
        SlotsOf(&Service::GetModemLogConfig, &Service::GetModemLogDirectPackConfig, &Service::GetModemLogLogMasks,
                &Service::GetModemLogStatus, MODEM_SWITCH, MODEM_SWITCH_WITH_ITEMS, &Service::SendModemLogCommand,
                &Service::ChangeModemLogConfig, &Service::GetTcpdumpStatus, &Service::GetTcpdumpConfig,
                &Service::ChangeTcpdumpConfig, TCPDUMP_SWITCH, TCPDUMP_SWITCH_WITH_ITEMS,
                &Service::HandleBluetoothCallPcmLogSwitch, &Service::FetchRemoteDevicesLogs,
                &Service::QueryRemoteDevicesLogs, &Service::GetRemoteDevicesList, &Service::QueryProtocolData);
    EXPECT_EQ(slots, (std::vector<size_t>{4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 21, 22, 23, 24, 25}));
    EXPECT_EQ(SlotsOf(&Client::GetProxy, &Client::OnRemoteDied, &Client::RegisterRemotedDied),
              (std::vector<size_t>{1, 2, 5}));
    // Destroys the client through either base.
    EXPECT_TRUE(std::has_virtual_destructor_v<Client>);
    EXPECT_TRUE(std::has_virtual_destructor_v<DelayedSingleton<ZelkLogServiceClient>>);
}

// Nor is any reference argument changed.
TEST(Client, HasItsOwnCodesForAnEmptyListAndForNoService)
{
    int proxies = 0;
    Texts refusals;
    Host::SetProxySource([&proxies](std::string&) {
        ++proxies;
        return sptr<Host::LogService>();
    });
    Host::SetLogCapture([&refusals](const Host::LogRecord& record) {
        if (record.message.find("empty") != std::string::npos) {
            refusals.push_back(std::to_string(record.level) + ' ' + record.tag + ' ' + record.message);
        }
    });
    ZelkLogServiceClient client;
    const auto item = std::make_shared<ConfigInfo>("key");
    Texts keys;
    std::vector<std::shared_ptr<ConfigInfo>> configs;
    Texts values = {"kept"};
    std::string text = "kept";
    bool flag = true;
    const auto codes = [&] {
        return Codes{client.GetModemLogConfig(keys, values),
                     client.GetTcpdumpConfig(keys, values),
                     client.ChangeModemLogConfig(configs, flag),
                     client.HandleModemLogSwitch(true, configs, flag),
                     client.HandleTcpdumpSwitch(true, configs, flag),
                     client.ChangeTcpdumpConfig(configs, flag),
                     client.GetModemLogDirectPackConfig(text),
                     client.GetModemLogLogMasks(values),
                     client.GetModemLogStatus(flag),
                     client.HandleModemLogSwitch(true, flag),
                     client.SendModemLogCommand(item, flag),
                     client.GetTcpdumpStatus(flag),
                     client.HandleTcpdumpSwitch(true, flag),
                     client.HandleBluetoothCallPcmLogSwitch(true),
                     client.FetchRemoteDevicesLogs(text, text, 1),
                     client.QueryRemoteDevicesLogs(text, text),
                     client.GetRemoteDevicesList(text),
                     client.QueryProtocolData(text, text)};
    };
    EXPECT_EQ(codes(), (Codes{7, 7, 7, 7, 7, 7, 3, 3, 3, 3, 3, 3, 3, 3, 1, 1, 1, 1}));
    EXPECT_EQ(proxies, 12); // The list is looked at first.
    const auto line = [](const char* method) {
        return "5 FRAMEWORK [" + std::string(method) + "]\"configs is empty.\"";
    };
    // The last of the six logs nothing.
    EXPECT_EQ(refusals, (Texts{line("GetModemLogConfig"), line("GetTcpdumpConfig"), line("ChangeModemLogConfig"),
                               line("HandleModemLogSwitch"), line("HandleTcpdumpSwitch")}));

    keys = {"key"};
    configs = {item};
    EXPECT_EQ(codes(), (Codes{3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 1, 1, 1, 1}));
    EXPECT_EQ(proxies, 12 + 18);
    EXPECT_TRUE(values == Texts{"kept"} && text == "kept" && flag);
    Host::SetLogCapture({});
    Host::SetProxySource({});
}

} // namespace

} // namespace OHOS::HiviewDFX
