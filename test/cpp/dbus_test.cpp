// The log service over D-Bus: the client's proxy, the process zelk-log-service, and buses and services that misbehave.
#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <future>
#include <gtest/gtest.h>
#include <optional>
#include <regex>
#include <sstream>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>

#include "dbus_names.h"
#include "failing_new.h"
#include "log_service_proxy.h"
#include "message_values.h"
#include "private_bus.h"
#include "reference_service.h"

namespace OHOS::Host {

using namespace std::chrono_literals;
using HiviewDFX::IZelkLogService;
using std::chrono::steady_clock;
using Codes = std::vector<int32_t>;
using Texts = std::vector<std::string>;

// Quoted for a shell and for a D-Bus service file, whatever the path of the checkout.
std::string Quoted(const std::string& path)
{
    return "'" + std::regex_replace(path, std::regex("'"), R"('"'"')") + "'";
}

const std::string PROGRAM = Quoted(ZELK_LOG_SERVICE_PROGRAM);
constexpr auto* BUS = PlayedBus::BUS;
constexpr auto* OWNER = PlayedBus::OWNER;

std::string Serving(const PrivateBus& bus)
{
    return PROGRAM + " --address " + bus.folder.address;
}

std::string ItemOf(const std::string& key, const std::string& value)
{
    return R"({"configKey":")" + key + R"(","value":)" + value + "}";
}

// "code on" or "code off".
std::string StatusBy(const Proxy& proxy)
{
    bool on = false;
    const int32_t code = proxy->GetModemLogStatus(on);
    return std::to_string(code) + (on ? " on" : " off");
}

// Modem log and packet capture differ only in their names.
struct Log {
    IZelkLogService& service;
    bool isModem;

    // "code result" of a change, of the switch too if `on` is given, with items if there are some.
    std::string Change(std::optional<bool> on, std::optional<Texts> items) const
    {
        bool result = items && items->size() > 1; // The opposite of the expected result.
        int32_t code = 0;
        if (!on) {
            code = isModem ? service.ChangeModemLogConfig(*items, result) : service.ChangeTcpdumpConfig(*items, result);
        } else if (!items) {
            code = isModem ? service.HandleModemLogSwitch(*on, result) : service.HandleTcpdumpSwitch(*on, result);
        } else {
            code = isModem ? service.HandleModemLogSwitch(*on, *items, result)
                           : service.HandleTcpdumpSwitch(*on, *items, result);
        }
        return std::to_string(code) + (result ? " true" : " false");
    }

    std::string State(Texts keys) const
    {
        bool on = false;
        Texts values = {"replaced"};
        EXPECT_EQ(isModem ? service.GetModemLogStatus(on) : service.GetTcpdumpStatus(on), 0);
        EXPECT_EQ(isModem ? service.GetModemLogConfig(keys, values) : service.GetTcpdumpConfig(keys, values), 0);
        std::string state = on ? "on" : "off";
        for (const std::string& value : values) {
            state += " " + value;
        }
        return state;
    }
};

// They keep switch and configuration apart.
void TryLogs(IZelkLogService& service)
{
    const std::string bad = "2 false";
    const std::string good = "0 true";
    const std::optional<bool> noSwitch;
    const std::optional<Texts> noItems;
    // The switch and the items; the answer; the switch and the value of "a" afterwards.
    const std::tuple<std::optional<bool>, std::optional<Texts>, std::string, std::string> steps[] = {
        {noSwitch,
         {{ItemOf("a", "1"), ItemOf("a", R"({"b":"\n"})"), ItemOf("ä😀\"", "")}},
         good,
         R"(off {\"b\":\"\\n\"})"},
        // One bad text, wherever it is, and nothing of the call takes effect.
        {true, {{ItemOf("a", "2"), "bad"}}, bad, R"(off {\"b\":\"\\n\"})"},
        {noSwitch, {{"", ItemOf("a", "2")}}, bad, R"(off {\"b\":\"\\n\"})"},
        {true, {{ItemOf("a", "3")}}, good, "on 3"},
        {false, noItems, good, "off 3"},
        {true, Texts(), good, "on 3"},
        {noSwitch, {{ItemOf("a", "")}}, good, "on "},
    };
    for (const bool isModem : {true, false}) {
        const Log log = {service, isModem};
        const Log other = {service, !isModem};
        const std::string before = other.State({"a"});
        EXPECT_EQ(log.State({}), "off");
        for (const auto& [on, items, answer, state] : steps) {
            EXPECT_EQ(log.Change(on, items), answer) << state;
            const size_t space = state.find(' ');
            const std::string a = R"( {"configKey":"a","value":")" + state.substr(space + 1) + "\"}";
            EXPECT_EQ(log.State({"ä😀\"", "never", "a", "a"}),
                      state.substr(0, space) +
                          R"( {"configKey":"ä😀\"","value":""} {"configKey":"never","value":"{}"})" + a + a);
            EXPECT_EQ(other.State({"a"}), before);
        }
    }
}

void TryTheRest(IZelkLogService& service)
{
    Texts masks;
    Texts texts(5);
    EXPECT_EQ(service.GetModemLogLogMasks(masks), 0);
    EXPECT_EQ(service.GetModemLogDirectPackConfig(texts[0]), 0);
    EXPECT_EQ(service.GetRemoteDevicesList(texts[1]), 0);
    EXPECT_EQ(service.FetchRemoteDevicesLogs("a\"b", texts[2], INT64_MIN), 0);
    EXPECT_EQ(service.QueryRemoteDevicesLogs("", texts[3]), 0);
    EXPECT_EQ(service.QueryProtocolData("\n", texts[4]), 0);
    EXPECT_EQ(masks, (Texts{R"({"configKey":"ap","value":"0x0"})", R"({"configKey":"cp","value":"0x0"})"}));
    EXPECT_EQ(texts, (Texts{R"({"directPack":false})", R"({"devices":[]})",
                            R"({"request":"a\"b","value":-9223372036854775808,"logs":[]})",
                            R"({"request":"","logs":[]})", R"({"request":"\n","data":""})"}));
    bool done = false;
    EXPECT_EQ(service.SendModemLogCommand(ItemOf("AT", "1"), done), 0);
    EXPECT_TRUE(done);
    EXPECT_EQ(service.SendModemLogCommand("AT", done), 2);
    EXPECT_FALSE(done);
    EXPECT_EQ(service.HandleBluetoothCallPcmLogSwitch(true), 0);
}

TEST(Dbus, EveryOperationAnswersTheSameEmbeddedAndOverDbus)
{
    const PrivateBus bus;
    const Process process(Serving(bus));
    for (const Proxy& service : {Proxy(new ReferenceService), bus.WaitForService()}) {
        TryLogs(*service);
        TryTheRest(*service);
    }
}

Texts MethodsOf(const std::string& xml)
{
    const std::regex row("<(method|arg)[^>]*>");
    return {std::sregex_token_iterator(xml.begin(), xml.end(), row), {}};
}

TEST(Dbus, TheServiceDescribesItselfAsItsFileDoes)
{
    const PrivateBus bus;
    const Process process(Serving(bus));
    bus.WaitForService();
    BusHandle connection;
    ASSERT_GE(OpenBus(bus.folder.address, 20s, connection), 0);
    sd_bus_message* answer = nullptr;
    const char* xml = "";
    ASSERT_GE(sd_bus_call_method(connection.get(), SERVICE_NAME, SERVICE_PATH, "org.freedesktop.DBus.Introspectable",
                                 "Introspect", nullptr, &answer, ""),
              0);
    const BusMessage owner(answer);
    ASSERT_GT(sd_bus_message_read(answer, "s", &xml), 0);
    const std::string all = xml;
    std::stringstream file;
    file << std::ifstream(ZELK_LOG_SERVICE_INTERFACE).rdbuf();
    EXPECT_EQ(MethodsOf(all.substr(all.find(SERVICE_INTERFACE))), MethodsOf(file.str()));
}

TEST(Dbus, ForeignAnswers)
{
    constexpr int32_t TYPES = IPC_WRONG_TYPES;
    constexpr int32_t ERROR = IPC_ERROR_ANSWER;
    constexpr int32_t GONE = IPC_SERVICE_GONE;
    // An answer, and the codes for callers that expect a boolean, a text, a list, or only a code.
    const std::pair<std::function<void(sd_bus_message*)>, Codes> cases[] = {
        {[](auto* call) { PlayedBus::Reply(call, OWNER, "ib", -7, 1); }, {-7, TYPES, TYPES, TYPES}},
        {[](auto* call) { PlayedBus::Reply(call, OWNER, "is", -7, "seen"); }, {TYPES, -7, TYPES, TYPES}},
        {[](auto* call) { PlayedBus::Reply(call, OWNER, "ias", -7, 1, "seen"); }, {TYPES, TYPES, -7, TYPES}},
        {[](auto* call) { PlayedBus::Reply(call, OWNER, "i", -7); }, {TYPES, TYPES, TYPES, -7}},
        {[](auto* call) { PlayedBus::Reply(call, OWNER, "ub", 0, 1); }, Codes(4, TYPES)},
        {[](auto* call) { PlayedBus::Reply(call, OWNER, "ibb", 0, 1, 1); }, Codes(4, TYPES)},
        {[](auto* call) { PlayedBus::Reply(call, OWNER, ""); }, Codes(4, TYPES)},
        {[](auto* call) { PlayedBus::ReplyError(call, OWNER, SD_BUS_ERROR_FAILED); }, Codes(4, ERROR)},
        // These look like the bus's own.
        {[](auto* call) { PlayedBus::ReplyError(call, OWNER, SD_BUS_ERROR_NO_REPLY); }, Codes(4, ERROR)},
        {[](auto* call) { PlayedBus::ReplyError(call, OWNER, SD_BUS_ERROR_TIMEOUT); }, Codes(4, ERROR)},
        // And these are.
        {[](auto* call) { PlayedBus::ReplyError(call, BUS, SD_BUS_ERROR_NO_REPLY); }, Codes(4, GONE)},
        {[](auto* call) { PlayedBus::ReplyError(call, BUS, SD_BUS_ERROR_SERVICE_UNKNOWN); }, Codes(4, GONE)},
        {[](auto* call) { PlayedBus::ReplyError(call, BUS, SD_BUS_ERROR_TIMEOUT); }, Codes(4, IPC_TIMEOUT)},
        {[](auto* call) { PlayedBus::ReplyError(call, BUS, "org.freedesktop.DBus.Error.TimedOut"); },
         Codes(4, IPC_TIMEOUT)},
        {[](auto* call) { PlayedBus::ReplyError(call, BUS, SD_BUS_ERROR_ACCESS_DENIED); }, Codes(4, ERROR)},
    };
    std::atomic<size_t> row = 0;
    const PlayedBus bus([&](sd_bus_message* call) { cases[row].first(call); });
    const Proxy proxy = bus.Find();
    for (; row < std::size(cases); ++row) {
        const Codes& codes = cases[row].second;
        bool status = false;
        std::string text = "kept";
        Texts list = {"kept"};
        EXPECT_EQ((Codes{proxy->GetModemLogStatus(status), proxy->GetRemoteDevicesList(text),
                         proxy->GetModemLogLogMasks(list), proxy->HandleBluetoothCallPcmLogSwitch(true)}),
                  codes)
            << row;
        EXPECT_EQ(status, codes[0] == -7) << row;
        EXPECT_EQ(text, codes[1] == -7 ? "seen" : "kept") << row;
        EXPECT_EQ(list, Texts{codes[2] == -7 ? "seen" : "kept"}) << row;
    }
    EXPECT_EQ(bus.connections, 1); // Calls one after the other need no more.
}

TEST(Dbus, OtherPeersAreNotBelieved)
{
    constexpr const char* STRANGER = ":1.66";
    const PlayedBus bus([](sd_bus_message* call) {
        EXPECT_STREQ(sd_bus_message_get_destination(call), OWNER);
        PlayedBus::Signal(call, STRANGER, BUS, "NameOwnerChanged", "sss", SERVICE_NAME, OWNER, STRANGER);
        PlayedBus::Reply(call, STRANGER, "ib", 66, 1);
        PlayedBus::ReplyError(call, STRANGER, SD_BUS_ERROR_NO_REPLY);
        PlayedBus::Reply(call, OWNER, "ib", 7, 0);
    });
    const Proxy proxy = bus.Find();
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(StatusBy(proxy), "7 off");
    }
}

// A connection may learn of a new owner only after it has called the old one.
TEST(Dbus, TheNextOwnerIsCalledWhenTheLastOneHasLeft)
{
    const PlayedBus bus([calls = 0](sd_bus_message* call) mutable {
        if (++calls == 1) {
            PlayedBus::Signal(call, BUS, BUS, "NameOwnerChanged", "sss", SERVICE_NAME, OWNER, ":1.3");
            PlayedBus::ReplyError(call, BUS, SD_BUS_ERROR_SERVICE_UNKNOWN);
        } else {
            EXPECT_STREQ(sd_bus_message_get_destination(call), ":1.3");
            PlayedBus::Reply(call, ":1.3", "ib", 0, 1);
        }
    });
    const Proxy proxy = bus.Find();
    EXPECT_EQ(StatusBy(proxy), "0 on");
}

TEST(Dbus, ALateAnswerIsDropped)
{
    std::vector<BusMessage> calls;
    const PlayedBus bus([&](sd_bus_message* call) {
        calls.emplace_back(sd_bus_message_ref(call));
        if (calls.size() == 2) {
            PlayedBus::Reply(calls[0].get(), OWNER, "ib", 1, 1);
            PlayedBus::Reply(calls[1].get(), OWNER, "ib", 2, 1);
            calls.clear();
        }
    });
    EXPECT_EQ(StatusBy(bus.Find(300ms)), "1002 off");
    EXPECT_EQ(StatusBy(bus.Find()), "2 on");
    EXPECT_EQ(bus.connections, 1);
}

TEST(Dbus, CallsOfSeveralThreadsAreInFlightTogether)
{
    std::vector<BusMessage> calls;
    const PlayedBus bus([&](sd_bus_message* call) {
        calls.emplace_back(sd_bus_message_ref(call));
        if (calls.size() == 4) { // None of them is answered earlier.
            for (const BusMessage& waiting : calls) {
                PlayedBus::Reply(waiting.get(), OWNER, "ib", 0, 1);
            }
            calls.clear();
        }
    });
    const Proxy proxy = bus.Find();
    std::vector<std::future<std::string>> answers;
    for (int i = 0; i < 4; ++i) {
        answers.push_back(std::async(std::launch::async, StatusBy, proxy));
    }
    for (std::future<std::string>& answer : answers) {
        EXPECT_EQ(answer.get(), "0 on");
    }
}

// Without its limit, a call lasts as long as the flood.
TEST(Dbus, AFloodDoesNotHoldACall)
{
    const PlayedBus bus(PlayedBus::Flood);
    const Proxy proxy = bus.Find(500ms);
    for (int round = 0; round < 2; ++round) { // The second starts while the flood of the first goes on.
        EXPECT_EQ(StatusBy(proxy), "1002 off");
    }
}

TEST(Dbus, ActivationCountsForTheLimit)
{
    const PrivateBus broken("false");
    EXPECT_EQ(broken.Find(), nullptr);
    const PrivateBus good(PROGRAM + " --session");
    EXPECT_EQ(StatusBy(good.Find()), "0 off");

    PlayedBus late([&late](sd_bus_message* call) {
        if (std::string_view(sd_bus_message_get_member(call)) == "StartServiceByName") {
            std::this_thread::sleep_for(1500ms);
            late.isOwned = true;
            PlayedBus::Reply(call, BUS, "u", 1);
        } else { // The owner has left and is to be started once more.
            PlayedBus::Signal(call, BUS, BUS, "NameOwnerChanged", "sss", SERVICE_NAME, OWNER, "");
            PlayedBus::ReplyError(call, BUS, SD_BUS_ERROR_SERVICE_UNKNOWN);
        }
    });
    late.isOwned = false;
    EXPECT_EQ(LogServiceProxy::Find(PoolOf(late.folder), 200ms), nullptr);
    late.isOwned = false;
    const steady_clock::time_point start = steady_clock::now();
    EXPECT_EQ(StatusBy(late.Find(2500ms)), "1002 off");
    EXPECT_LT(steady_clock::now() - start, 4s);
}

TEST(Dbus, WithMemoryShortACallFailsAndThrowsNothing)
{
    const PlayedBus bus([](sd_bus_message* call) {
        PlayedBus::Reply(call, OWNER, "ias", 0, 2, std::string(100, 'x').c_str(), std::string(100, 'y').c_str());
    });
    int32_t code = IPC_ERROR_ANSWER;
    int least = 0; // The number of allocations that is enough.
    for (; code == IPC_ERROR_ANSWER && least < 1000; ++least) {
        const std::shared_ptr<BusPool> pool = PoolOf(bus.folder);
        Texts list = {"kept"};
        ZelkTest::g_allocationsLeft = least;
        {
            const Proxy proxy = LogServiceProxy::Find(pool, 20s);
            code = proxy ? proxy->GetModemLogLogMasks(list) : IPC_ERROR_ANSWER;
        }
        ZelkTest::g_allocationsLeft = -1;
        EXPECT_EQ(list.size(), code == 0 ? 2 : 1);
    }
    EXPECT_EQ(code, 0);
    EXPECT_GT(least, 5);
}

TEST(Dbus, BadInputLeavesTheServiceAsItWas)
{
    const PrivateBus bus;
    const Process service(Serving(bus));
    const Proxy proxy = bus.WaitForService();
    bool done = false;
    ASSERT_EQ(proxy->HandleModemLogSwitch(true, done), 0);
    for (const std::string& text : {std::string("\xff"), std::string("a\0b", 3)}) {
        Texts list = {text, "fine"};
        EXPECT_EQ(proxy->SendModemLogCommand(text, done), IPC_ERROR_ANSWER);
        EXPECT_EQ(proxy->ChangeModemLogConfig(list, done), IPC_ERROR_ANSWER);
    }
    const Deadline deadline = steady_clock::now() + 20s;
    std::unique_ptr<BusConnection> connection;
    ASSERT_EQ(BusConnection::Open(bus.folder.address, deadline, connection), 0);
    for (const char* method : {"HandleModemLogSwitch", "ChangeModemLogConfig", "GetModemLogStatus", "NoSuchMethod"}) {
        const BusMessage call = connection->NewCall(method);
        BusMessage answer;
        ASSERT_TRUE(Append(call.get(), std::string("text")));
        EXPECT_EQ(connection->Call(call, deadline, answer), IPC_ERROR_ANSWER) << method;
    }
    EXPECT_EQ(StatusBy(proxy), "0 on");
}

// Each of these once ended the service, or its connection to the bus.
TEST(Dbus, RequestsPastTheLimitsAreRefusedAndTheServiceLives)
{
    const PrivateBus bus;
    const Process service(Serving(bus));
    const Proxy proxy = bus.WaitForService();
    bool done = false;
    Texts items = {ItemOf("k", std::string(900'000, 'x'))};
    ASSERT_EQ(proxy->HandleModemLogSwitch(true, items, done), 0);
    for (const Texts& keys : {Texts(70, "k"), Texts(20'000, "k"), Texts(700'000, "")}) {
        Texts asked = keys;
        Texts values = {"left over"};
        EXPECT_EQ(proxy->GetModemLogConfig(asked, values), 2);
        EXPECT_EQ(values, Texts());
    }
    Texts tooMany(700'000, ItemOf("", ""));
    EXPECT_EQ(proxy->ChangeModemLogConfig(tooMany, done), 2);
    EXPECT_FALSE(done);
    std::string response = "left over";
    EXPECT_EQ(proxy->QueryProtocolData(std::string(16'000'001, 'x'), response), 2);
    EXPECT_EQ(response, "");
    EXPECT_EQ(StatusBy(proxy), "0 on");
}

// Runs find_service with further settings. The first is the value of ZELK_LOG_SERVICE.
void FindService(const std::string& settings, const std::string& argument = "")
{
    const std::string command =
        "exec env ZELK_LOG_SERVICE=" + settings + " " + Quoted(ZELK_FIND_SERVICE) + " " + argument;
    execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
}

TEST(ServiceSetting, Values)
{
    const PrivateBus bus;
    const Process service(Serving(bus));
    bus.WaitForService();
    const std::string& address = bus.folder.address;
    const std::string report = "^zelklogservice: ZELK_LOG_SERVICE=\"[^\n]*no service\n$";
    const std::string silence = "^$";
    const std::string linked = bus.folder.path / "a,b"; // Has to be escaped in an address.
    std::filesystem::create_directory_symlink(bus.folder.path, linked);
    const std::tuple<std::string, int, std::string> cases[] = {
        {"", 0, silence},
        {"none", 1, silence},
        {"'Session\n'", 1, report},
        {address, 0, silence},
        // libsystemd skips empty parts and transports that it does not know.
        {"'autolaunch:;" + address + ";'", 0, silence},
        {"'unix:path=/nonexistent;" + address + "'", 0, silence},
        {":", 1, silence},
        {"unix:path=/nonexistent", 1, silence},
        // What it refuses.
        {"unix:", 1, report},
        {"'unix:path=/nonexistent;unixexec:path=/bin/true'", 1, report},
        {"session DBUS_SESSION_BUS_ADDRESS=" + address, 0, silence},
        {"session DBUS_SESSION_BUS_ADDRESS= XDG_RUNTIME_DIR=" + linked, 0, silence},
        {"session DBUS_SESSION_BUS_ADDRESS= XDG_RUNTIME_DIR=", 1, silence},
        {"session DBUS_SESSION_BUS_ADDRESS=unixexec:path=/bin/true", 1,
         "DBUS_SESSION_BUS_ADDRESS=\"[^\n]*no service\n$"},
        {"system DBUS_SYSTEM_BUS_ADDRESS=" + address, 0, silence},
    };
    for (const auto& [settings, status, errors] : cases) {
        EXPECT_EXIT(FindService(settings), testing::ExitedWithCode(status), errors) << settings;
    }
    // After the D-Bus library could not be opened, the next call tries again.
    EXPECT_EXIT(FindService(address, "without-descriptors"), testing::ExitedWithCode(0),
                "^zelklogservice: [^\n]*cannot open libzelk_dbus.so[^\n]*no service\n$");
}

TEST(LogServiceProgram, HasItsExitStatus)
{
    const std::pair<const char*, int> cases[] = {
        {"--help", 0},    {"--address=unix:path=/nonexistent", 1},
        {"--address", 2}, {"--quiet", 2},
        {"extra", 2},     {"--quiet 2>&1 | grep -q 'unknown option --quiet; try --help'", 0},
    };
    for (const auto& [words, status] : cases) {
        EXPECT_EQ(Process(PROGRAM + " " + words).Wait(), status) << words;
    }
    const PrivateBus bus;
    Process service("env DBUS_SYSTEM_BUS_ADDRESS=" + bus.folder.address + " " + PROGRAM + " --system");
    bus.WaitForService();
    service.Signal(SIGINT);
    EXPECT_EQ(service.Wait(), 0);
    EXPECT_EQ(bus.Find(), nullptr);
}

TEST(LogServiceProgram, EndsWhateverItWaitsFor)
{
    const PrivateBus bus;
    const std::string unread = bus.folder.path / "unread";
    ASSERT_EQ(mkfifo(unread.c_str(), S_IRUSR | S_IWUSR), 0);
    Process verbose(Serving(bus) + " --verbose 2<>" + unread);
    bus.WaitForService();
    const Proxy impatient = bus.Find(300ms);
    while (StatusBy(impatient) == "0 off") {
    }
    verbose.Signal(SIGTERM);
    EXPECT_EQ(verbose.Wait(), 0);

    const int reader = open(unread.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    Process serving(Serving(bus) + " --verbose 2>" + unread);
    bus.WaitForService();
    close(reader);
    for (int call = 0; call < 2; ++call) { // The second finds whether the first has ended the service.
        EXPECT_EQ(StatusBy(bus.WaitForService()), "0 off");
    }
    bus.daemon->Signal(SIGSTOP);
    Process starting(Serving(bus));
    std::this_thread::sleep_for(200ms);
    for (Process* service : {&serving, &starting}) {
        const steady_clock::time_point start = steady_clock::now();
        service->Signal(SIGTERM);
        EXPECT_EQ(service->Wait(), 0); // The bus's own limit of 25 s would have been an error.
        EXPECT_LT(steady_clock::now() - start, 5s);
    }
}

} // namespace OHOS::Host
