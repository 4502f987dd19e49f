// The service client: codes of its own, what reaches the service, and the slots of the service's interface.
#include <cstring>
#include <thread>

#include <gtest/gtest.h>

#include "client/zelk_log_service_client.h"
#include "hilog/capture.h"
#include "zelk_service_api/proxy_source.h"

namespace OHOS::HiviewDFX {

namespace {

using Configs = std::vector<std::shared_ptr<ConfigInfo>>;

// The slot of a virtual operation, counted from one: its member pointer holds one more than the slot's offset.
template <typename Operation>
size_t SlotOf(Operation operation)
{
    size_t pointer = 0;
    std::memcpy(&pointer, &operation, sizeof(pointer));
    return (pointer - 1) / sizeof(void*) + 1;
}

// The overloads of a switch.
using Switch = int32_t (IZelkLogService::*)(bool, bool&);
using SwitchWithConfigs = int32_t (IZelkLogService::*)(bool, std::vector<std::string>&, bool&);

class ClientTest : public testing::Test {
protected:
    void SetUp() override
    {
        Host::SetProxySource([this] {
            proxyCount_++;
            return sptr<IZelkLogService>();
        });
        Host::SetLogCapture([this](const Host::LogRecord& record) {
            lines_.push_back(std::to_string(record.level) + " " + record.tag + ": " + record.message);
        });
    }
    void TearDown() override
    {
        Host::SetLogCapture({});
        Host::SetProxySource({});
    }

    // What a call answers, whether it asked for the service, and its last line.
    std::string Outcome(int32_t code)
    {
        const std::string line = lines_.empty() ? "" : lines_.back();
        std::string outcome = std::to_string(code) + (proxyCount_ > 0 ? " asked " : " ") + line;
        proxyCount_ = 0;
        lines_.clear();
        return outcome;
    }

    int proxyCount_ = 0;
    std::vector<std::string> lines_;
    ZelkLogServiceClient client_;
};

} // namespace

TEST(ClientSlots, StandInTheServicesOrder)
{
    using Service = IZelkLogService;
    EXPECT_EQ(SlotOf(&Service::GetModemLogConfig), 4U);
    EXPECT_EQ(SlotOf(&Service::GetModemLogDirectPackConfig), 5U);
    EXPECT_EQ(SlotOf(&Service::GetModemLogLogMasks), 6U);
    EXPECT_EQ(SlotOf(&Service::GetModemLogStatus), 7U);
    EXPECT_EQ(SlotOf<Switch>(&Service::HandleModemLogSwitch), 8U);
    EXPECT_EQ(SlotOf<SwitchWithConfigs>(&Service::HandleModemLogSwitch), 9U);
    EXPECT_EQ(SlotOf(&Service::SendModemLogCommand), 10U);
    EXPECT_EQ(SlotOf(&Service::ChangeModemLogConfig), 11U);
    EXPECT_EQ(SlotOf(&Service::GetTcpdumpStatus), 12U);
    EXPECT_EQ(SlotOf(&Service::GetTcpdumpConfig), 13U);
    EXPECT_EQ(SlotOf(&Service::ChangeTcpdumpConfig), 14U);
    EXPECT_EQ(SlotOf<Switch>(&Service::HandleTcpdumpSwitch), 15U);
    EXPECT_EQ(SlotOf<SwitchWithConfigs>(&Service::HandleTcpdumpSwitch), 16U);
    EXPECT_EQ(SlotOf(&Service::HandleBluetoothCallPcmLogSwitch), 21U);
    EXPECT_EQ(SlotOf(&Service::FetchRemoteDevicesLogs), 22U);
    EXPECT_EQ(SlotOf(&Service::QueryRemoteDevicesLogs), 23U);
    EXPECT_EQ(SlotOf(&Service::GetRemoteDevicesList), 24U);
    EXPECT_EQ(SlotOf(&Service::QueryProtocolData), 25U);
    EXPECT_EQ(SlotOf(&Client::GetProxy), 1U);
    EXPECT_EQ(SlotOf(&Client::OnRemoteDied), 2U);
    EXPECT_EQ(SlotOf(&Client::RegisterRemotedDied), 5U);
}

TEST_F(ClientTest, RefusesEmptyListsBeforeAskingForTheService)
{
    std::vector<std::string> none;
    std::vector<std::string> values = {"kept"};
    Configs noConfigs;
    bool result = true;
    const auto line = [](const std::string& method) {
        return "7 5 FRAMEWORK: [" + method + "]\"configs is empty.\"";
    };
    EXPECT_EQ(Outcome(client_.GetModemLogConfig(none, values)), line("GetModemLogConfig"));
    EXPECT_EQ(Outcome(client_.GetTcpdumpConfig(none, values)), line("GetTcpdumpConfig"));
    EXPECT_EQ(Outcome(client_.ChangeModemLogConfig(noConfigs, result)), line("ChangeModemLogConfig"));
    EXPECT_EQ(Outcome(client_.HandleModemLogSwitch(true, noConfigs, result)), line("HandleModemLogSwitch"));
    EXPECT_EQ(Outcome(client_.HandleTcpdumpSwitch(true, noConfigs, result)), line("HandleTcpdumpSwitch"));
    EXPECT_EQ(Outcome(client_.ChangeTcpdumpConfig(noConfigs, result)), "7 ");
    EXPECT_TRUE(result);
    EXPECT_EQ(values, std::vector<std::string>{"kept"});
}

TEST_F(ClientTest, HasItsOwnCodesForAServiceThatCannotBeReached)
{
    std::vector<std::string> texts = {"key"};
    Configs configs = {std::make_shared<ConfigInfo>("key")};
    std::string text = "kept";
    bool flag = true;
    const auto line = [](int code, const std::string& method) {
        return std::to_string(code) + " asked 5 FRAMEWORK: [" + method + "]\"get proxy fail.\"";
    };
    EXPECT_EQ(Outcome(client_.GetModemLogConfig(texts, texts)), line(3, "GetModemLogConfig"));
    EXPECT_EQ(Outcome(client_.GetModemLogDirectPackConfig(text)), line(3, "GetModemLogDirectPackConfig"));
    EXPECT_EQ(Outcome(client_.GetModemLogLogMasks(texts)), line(3, "GetModemLogLogMasks"));
    EXPECT_EQ(Outcome(client_.GetModemLogStatus(flag)), line(3, "GetModemLogStatus"));
    EXPECT_EQ(Outcome(client_.HandleModemLogSwitch(true, flag)), line(3, "HandleModemLogSwitch"));
    EXPECT_EQ(Outcome(client_.HandleModemLogSwitch(true, configs, flag)), line(3, "HandleModemLogSwitch"));
    EXPECT_EQ(Outcome(client_.SendModemLogCommand(configs[0], flag)), line(3, "SendModemLogCommand"));
    EXPECT_EQ(Outcome(client_.ChangeModemLogConfig(configs, flag)), line(3, "ChangeModemLogConfig"));
    EXPECT_EQ(Outcome(client_.GetTcpdumpStatus(flag)), line(3, "GetTcpdumpStatus"));
    EXPECT_EQ(Outcome(client_.GetTcpdumpConfig(texts, texts)), line(3, "GetTcpdumpConfig"));
    EXPECT_EQ(Outcome(client_.ChangeTcpdumpConfig(configs, flag)), line(3, "ChangeTcpdumpConfig"));
    EXPECT_EQ(Outcome(client_.HandleTcpdumpSwitch(true, flag)), line(3, "HandleTcpdumpSwitch"));
    EXPECT_EQ(Outcome(client_.HandleTcpdumpSwitch(true, configs, flag)), line(3, "HandleTcpdumpSwitch"));
    EXPECT_EQ(Outcome(client_.HandleBluetoothCallPcmLogSwitch(true)), line(3, "HandleBluetoothCallPcmLogSwitch"));
    EXPECT_EQ(Outcome(client_.FetchRemoteDevicesLogs(text, text, 1)), line(1, "FetchRemoteDevicesLogs"));
    EXPECT_EQ(Outcome(client_.QueryRemoteDevicesLogs(text, text)), line(1, "QueryRemoteDevicesLogs"));
    EXPECT_EQ(Outcome(client_.GetRemoteDevicesList(text)), line(1, "GetRemoteDevicesList"));
    EXPECT_EQ(Outcome(client_.QueryProtocolData(text, text)), line(1, "QueryProtocolData"));
    EXPECT_TRUE(flag);
    EXPECT_EQ(text, "kept");
}

TEST(ClientSingleton, IsOneForThreadsThatAskAtOnce)
{
    std::vector<std::shared_ptr<ZelkLogServiceClient>> clients(8);
    std::vector<std::thread> threads;
    for (auto& client : clients) {
        threads.emplace_back([&client] {
            client = DelayedSingleton<ZelkLogServiceClient>::GetInstance();
            bool status = true;
            EXPECT_EQ(client->GetModemLogStatus(status), 0);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const auto& client : clients) {
        EXPECT_EQ(client, clients[0]);
    }
    // The singleton's own base is polymorphic: it can destroy the client.
    const DelayedSingleton<ZelkLogServiceClient>& base = *clients[0];
    EXPECT_EQ(dynamic_cast<const Client*>(&base), clients[0].get());
}

} // namespace OHOS::HiviewDFX
