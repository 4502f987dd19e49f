// The service client: codes of its own, and the slots of the interfaces that it shares with the service.
#include <cstring>
#include <type_traits>

#include <gtest/gtest.h>

#include "client/zelk_log_service_client.h"
#include "hilog/capture.h"
#include "zelk_service_api/proxy_source.h"

namespace OHOS::HiviewDFX {

using Texts = std::vector<std::string>;
using Codes = std::vector<int32_t>;

// The slots of virtual operations, counted from one: a member pointer to one holds one more than the slot's offset.
template <typename... Operations>
std::vector<size_t> SlotsOf(Operations... operations)
{
    size_t pointer = 0;
    return {(std::memcpy(&pointer, &operations, sizeof(pointer)), (pointer - 1) / sizeof(void*) + 1)...};
}

TEST(Client, HasThePlatformsBinaryInterface)
{
    using S = IZelkLogService;
    using Switch = int32_t (S::*)(bool, bool&);
    using ItemSwitch = int32_t (S::*)(bool, Texts&, bool&);
    EXPECT_EQ(SlotsOf(&S::GetModemLogConfig, &S::GetModemLogDirectPackConfig, &S::GetModemLogLogMasks,
                      &S::GetModemLogStatus, Switch{&S::HandleModemLogSwitch}, ItemSwitch{&S::HandleModemLogSwitch},
                      &S::SendModemLogCommand, &S::ChangeModemLogConfig, &S::GetTcpdumpStatus, &S::GetTcpdumpConfig,
                      &S::ChangeTcpdumpConfig, Switch{&S::HandleTcpdumpSwitch}, ItemSwitch{&S::HandleTcpdumpSwitch},
                      &S::HandleBluetoothCallPcmLogSwitch, &S::FetchRemoteDevicesLogs, &S::QueryRemoteDevicesLogs,
                      &S::GetRemoteDevicesList, &S::QueryProtocolData, &Client::GetProxy, &Client::OnRemoteDied,
                      &Client::RegisterRemotedDied),
              (std::vector<size_t>{4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 21, 22, 23, 24, 25, 1, 2, 5}));
    // The base of the singleton can destroy the client.
    EXPECT_TRUE(std::has_virtual_destructor_v<DelayedSingleton<ZelkLogServiceClient>>);
}

TEST(Client, HasCodesOfItsOwn)
{
    int proxies = 0;
    Texts lines;
    Host::SetProxySource([&] { return ++proxies, sptr<IZelkLogService>(); });
    Host::SetLogCapture([&](const Host::LogRecord& record) { lines.push_back(record.tag + record.message); });
    ZelkLogServiceClient client;
    Texts none, keys = {"key"}, values = {"kept"};
    std::vector<std::shared_ptr<ConfigInfo>> noConfigs, configs = {std::make_shared<ConfigInfo>("key")};
    std::string text = "kept";
    bool flag = true;
    EXPECT_EQ((Codes{client.GetModemLogConfig(none, values), client.GetTcpdumpConfig(none, values),
                     client.ChangeModemLogConfig(noConfigs, flag), client.HandleModemLogSwitch(true, noConfigs, flag),
                     client.HandleTcpdumpSwitch(true, noConfigs, flag), client.ChangeTcpdumpConfig(noConfigs, flag)}),
              Codes(6, 7));
    EXPECT_EQ(proxies, 0);
    const auto line = [](const char* method) {
        return "FRAMEWORK[" + std::string(method) + "]\"configs is empty.\"";
    };
    EXPECT_EQ(lines, (Texts{line("GetModemLogConfig"), line("GetTcpdumpConfig"), line("ChangeModemLogConfig"),
                            line("HandleModemLogSwitch"), line("HandleTcpdumpSwitch")})); // The last call is silent.
    EXPECT_EQ((Codes{client.GetModemLogConfig(keys, values), client.GetModemLogDirectPackConfig(text),
                     client.GetModemLogLogMasks(values), client.GetModemLogStatus(flag),
                     client.HandleModemLogSwitch(true, flag), client.HandleModemLogSwitch(true, configs, flag),
                     client.SendModemLogCommand(configs[0], flag), client.ChangeModemLogConfig(configs, flag),
                     client.GetTcpdumpStatus(flag), client.GetTcpdumpConfig(keys, values),
                     client.ChangeTcpdumpConfig(configs, flag), client.HandleTcpdumpSwitch(true, flag),
                     client.HandleTcpdumpSwitch(true, configs, flag), client.HandleBluetoothCallPcmLogSwitch(true)}),
              Codes(14, 3));
    EXPECT_EQ((Codes{client.FetchRemoteDevicesLogs(text, text, 1), client.QueryRemoteDevicesLogs(text, text),
                     client.GetRemoteDevicesList(text), client.QueryProtocolData(text, text)}),
              Codes(4, 1));
    EXPECT_TRUE(proxies == 18 && flag && values == Texts{"kept"} && text == "kept");
    Host::SetLogCapture({});
    Host::SetProxySource({});
}

} // namespace OHOS::HiviewDFX
