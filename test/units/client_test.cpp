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

// The slot of a virtual operation, counted from one. A member pointer to it holds the slot's offset, on some processors
// plus one.
template <typename Operation>
size_t SlotOf(Operation operation)
{
    size_t pointer = 0;
    std::memcpy(&pointer, &operation, sizeof(pointer));
    return pointer / sizeof(void*) + 1;
}

template <auto... OPERATIONS>
std::vector<size_t> SlotsOf()
{
    return {SlotOf(OPERATIONS)...};
}

TEST(Client, HasThePlatformsBinaryInterface)
{
    using S = IZelkLogService;
    constexpr int32_t (S::*modemSwitch)(bool, bool&) = &S::HandleModemLogSwitch;
    constexpr int32_t (S::*modemItems)(bool, Texts&, bool&) = &S::HandleModemLogSwitch;
    constexpr int32_t (S::*tcpdumpSwitch)(bool, bool&) = &S::HandleTcpdumpSwitch;
    constexpr int32_t (S::*tcpdumpItems)(bool, Texts&, bool&) = &S::HandleTcpdumpSwitch;
    const std::vector<size_t> slots =
        SlotsOf<&S::GetModemLogConfig, &S::GetModemLogDirectPackConfig, &S::GetModemLogLogMasks, &S::GetModemLogStatus,
                modemSwitch, modemItems, &S::SendModemLogCommand, &S::ChangeModemLogConfig, &S::GetTcpdumpStatus,
                &S::GetTcpdumpConfig, &S::ChangeTcpdumpConfig, tcpdumpSwitch, tcpdumpItems,
                &S::HandleBluetoothCallPcmLogSwitch, &S::FetchRemoteDevicesLogs, &S::QueryRemoteDevicesLogs,
                &S::GetRemoteDevicesList, &S::QueryProtocolData>();
    EXPECT_EQ(slots, (std::vector<size_t>{4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 21, 22, 23, 24, 25}));
    const std::vector<size_t> own = SlotsOf<&Client::GetProxy, &Client::OnRemoteDied, &Client::RegisterRemotedDied>();
    EXPECT_EQ(own, (std::vector<size_t>{1, 2, 5}));
    // Destroys the client through either base.
    EXPECT_TRUE(std::has_virtual_destructor_v<Client>);
    EXPECT_TRUE(std::has_virtual_destructor_v<DelayedSingleton<ZelkLogServiceClient>>);
}

// Nor is any reference argument changed.
TEST(Client, HasItsOwnCodesForAnEmptyListAndForNoService)
{
    int proxies = 0;
    Texts lines;
    Host::SetProxySource([&proxies](std::string&) {
        ++proxies;
        return sptr<Host::LogService>();
    });
    Host::SetLogCapture([&lines](const Host::LogRecord& record) {
        if (record.tag == "FRAMEWORK") {
            lines.push_back(std::to_string(record.level) + ' ' + record.message);
        }
    });
    ZelkLogServiceClient client;
    Texts values = {"kept"};
    std::string text = "kept";
    bool flag = true;

    Texts keys;
    std::vector<std::shared_ptr<ConfigInfo>> configs;
    const Codes emptyCodes = {
        client.GetModemLogConfig(keys, values),          client.GetTcpdumpConfig(keys, values),
        client.ChangeModemLogConfig(configs, flag),      client.HandleModemLogSwitch(true, configs, flag),
        client.HandleTcpdumpSwitch(true, configs, flag), client.ChangeTcpdumpConfig(configs, flag),
    };
    EXPECT_EQ(emptyCodes, Codes(6, 7));
    EXPECT_EQ(proxies, 0); // The list is looked at first.
    const auto line = [](const char* method) {
        return "5 [" + std::string(method) + "]\"configs is empty.\"";
    };
    // The last method logs nothing.
    EXPECT_EQ(lines, (Texts{line("GetModemLogConfig"), line("GetTcpdumpConfig"), line("ChangeModemLogConfig"),
                            line("HandleModemLogSwitch"), line("HandleTcpdumpSwitch")}));

    keys = {"key"};
    configs = {std::make_shared<ConfigInfo>("key")};
    const Codes codes = {client.GetModemLogConfig(keys, values),
                         client.GetModemLogDirectPackConfig(text),
                         client.GetModemLogLogMasks(values),
                         client.GetModemLogStatus(flag),
                         client.HandleModemLogSwitch(true, flag),
                         client.HandleModemLogSwitch(true, configs, flag),
                         client.SendModemLogCommand(configs[0], flag),
                         client.ChangeModemLogConfig(configs, flag),
                         client.GetTcpdumpStatus(flag),
                         client.GetTcpdumpConfig(keys, values),
                         client.ChangeTcpdumpConfig(configs, flag),
                         client.HandleTcpdumpSwitch(true, flag),
                         client.HandleTcpdumpSwitch(true, configs, flag),
                         client.HandleBluetoothCallPcmLogSwitch(true)};
    EXPECT_EQ(codes, Codes(14, 3));
    const Codes remoteCodes = {client.FetchRemoteDevicesLogs(text, text, 1), client.QueryRemoteDevicesLogs(text, text),
                               client.GetRemoteDevicesList(text), client.QueryProtocolData(text, text)};
    EXPECT_EQ(remoteCodes, Codes(4, 1));
    EXPECT_EQ(proxies, 18);

    EXPECT_TRUE(values == Texts{"kept"} && text == "kept" && flag);
    Host::SetLogCapture({});
    Host::SetProxySource({});
}

} // namespace

} // namespace OHOS::HiviewDFX
