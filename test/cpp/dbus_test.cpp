// The log service over D-Bus: the client's proxy, the process zelk-log-service, and services that misbehave.
#include <atomic>
#include <filesystem>
#include <fstream>
#include <future>
#include <gtest/gtest.h>
#include <regex>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>

#include "dbus_names.h"
#include "log_service_proxy.h"
#include "message_values.h"
#include "reference_service.h"

namespace OHOS::Host {

using namespace std::chrono_literals;
using HiviewDFX::IZelkLogService;
using std::chrono::steady_clock;
using Codes = std::vector<int32_t>;
using Texts = std::vector<std::string>;
using Proxy = sptr<IZelkLogService>;

// For a shell and for a D-Bus service file, wherever the checkout is.
const std::string PROGRAM = "'" + std::regex_replace(ZELK_LOG_SERVICE_PROGRAM, std::regex("'"), R"('"'"')") + "'";

// clang-format off
// A child process that runs a command. It ends with this object or with the test, even if that is killed.
struct Process {
    explicit Process(const std::string& command)
    {
        const pid_t test = getpid();
        if ((pid = fork()) == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            _exit(getppid() == test ? execl("/bin/sh", "sh", "-c", ("exec " + command).c_str(), nullptr) : 1);
        }
    }
    Process(const Process&) = delete;
    ~Process() { Signal(SIGKILL), Wait(); }

    void Signal(int signal) const { pid > 0 ? kill(pid, signal) : 0; }
    // Its exit status, or -1 when a signal ended it.
    int Wait()
    {
        int status = 0;
        const bool ended = pid > 0 && waitpid(std::exchange(pid, 0), &status, 0) > 0;
        return ended && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    pid_t pid = 0;
};

template <typename Condition> bool Eventually(Condition condition)
{
    int tries = 0;
    for (; tries < 1000 && !condition(); ++tries) { std::this_thread::sleep_for(10ms); }
    return tries < 1000;
}

// A D-Bus daemon and those it starts. Its address outlasts a stop.
struct PrivateBus {
    // `command` is what the bus runs when somebody asks for the service.
    explicit PrivateBus(const std::string& command = "")
    {
        std::filesystem::create_directory(folder / "services");
        std::ofstream(folder / "conf") << "<busconfig><type>session</type><listen>" << address << "</listen>"
            << "<servicedir>" << folder.string() << "/services</servicedir><policy context='default'><allow own='*'/>"
            << "<allow send_destination='*'/><allow receive_sender='*'/></policy></busconfig>";
        std::ofstream(folder / (command.empty() ? "none" : "services/dev.zelk.LogService.service"))
            << "[D-BUS Service]\nName=" << SERVICE_NAME << "\nExec=/usr/bin/env " << command << "\n";
        Start();
    }
    ~PrivateBus() { Stop(), std::filesystem::remove_all(folder); }

    void Start()
    {
        daemon = std::make_unique<Process>("dbus-daemon --nofork --config-file=" + folder.string() + "/conf");
        EXPECT_TRUE(Eventually([&] { return BusConnection::Open(address, steady_clock::now() + 1s) != nullptr; }));
    }
    void Stop() { daemon.reset(), std::filesystem::remove(folder / "bus"); }
    Proxy Find(steady_clock::duration limit = 20s) const { return LogServiceProxy::Find(pool, limit); }
    // For a service that has just been started.
    Proxy Found() const
    {
        Proxy proxy;
        return Eventually([&] { return (proxy = Find()) != nullptr; }) ? proxy : throw std::runtime_error("no service");
    }

    const std::filesystem::path folder = mkdtemp((testing::TempDir() + "zelk-bus-XXXXXX").data());
    const std::string address = "unix:path=" + (folder / "bus").string();
    const std::string serve = PROGRAM + " --address " + address;
    const std::shared_ptr<BusPool> pool = std::make_shared<BusPool>(address);
    std::unique_ptr<Process> daemon;
};

std::string ItemOf(const std::string& key, const std::string& value)
{
    return R"({"configKey":")" + key + R"(","value":)" + value + "}";
}

// Modem log and packet capture are the same but for their names.
struct Log {
    IZelkLogService& s;
    bool isModem;

    // "code result" of a change, of the switch too if `on` is given, with items if there are some.
    std::string Change(std::optional<bool> on, std::optional<Texts> items) const
    {
        bool result = items && items->size() > 1; // Not what is expected.
        const int32_t code =
            !on ? (isModem ? s.ChangeModemLogConfig(*items, result) : s.ChangeTcpdumpConfig(*items, result))
            : !items ? (isModem ? s.HandleModemLogSwitch(*on, result) : s.HandleTcpdumpSwitch(*on, result))
            : isModem ? s.HandleModemLogSwitch(*on, *items, result) : s.HandleTcpdumpSwitch(*on, *items, result);
        return std::to_string(code) + (result ? " true" : " false");
    }
    std::string State(Texts keys) const
    {
        bool on = false;
        Texts values = {"replaced"};
        EXPECT_EQ(isModem ? s.GetModemLogStatus(on) : s.GetTcpdumpStatus(on), 0);
        EXPECT_EQ(isModem ? s.GetModemLogConfig(keys, values) : s.GetTcpdumpConfig(keys, values), 0);
        std::string state = on ? "on" : "off";
        for (const std::string& value : values) { state += " " + value; }
        return state;
    }
};

// They keep switch and configuration apart.
void TryLogs(IZelkLogService& service)
{
    const std::string bad = "2 false", good = "0 true";
    // The switch and the items, if given; what is answered; the switch and the value of "a" then.
    const std::tuple<std::optional<bool>, std::optional<Texts>, std::string, std::string> steps[] = {
        {{}, {{ItemOf("a", "1"), ItemOf("a", R"({"b":"\n"})"), ItemOf("ä😀\"", "")}}, good, R"(off {\"b\":\"\\n\"})"},
        // One bad text, wherever it stands, and nothing of the call takes effect.
        {true, {{ItemOf("a", "2"), "bad"}}, bad, R"(off {\"b\":\"\\n\"})"},
        {{}, {{"", ItemOf("a", "2")}}, bad, R"(off {\"b\":\"\\n\"})"},
        {true, {{ItemOf("a", "3")}}, good, "on 3"}, {false, {{"bad"}}, bad, "on 3"}, {false, {}, good, "off 3"},
        {{}, Texts(), good, "off 3"}, {true, Texts(), good, "on 3"}, {{}, {{ItemOf("a", "")}}, good, "on "},
    };
    for (const bool isModem : {true, false}) {
        const Log log = {service, isModem}, other = {service, !isModem};
        const std::string before = other.State({"a"});
        EXPECT_EQ(log.State({}), "off");
        for (const auto& [on, items, answer, state] : steps) {
            EXPECT_EQ(log.Change(on, items), answer) << state;
            const size_t space = state.find(' ');
            const std::string a = R"( {"configKey":"a","value":")" + state.substr(space + 1) + "\"}";
            EXPECT_EQ(log.State({"ä😀\"", "never", "a", "a"}), state.substr(0, space) +
                      R"( {"configKey":"ä😀\"","value":""} {"configKey":"never","value":"{}"})" + a + a);
            EXPECT_EQ(other.State({"a"}), before);
        }
    }
}

void TryTheRest(IZelkLogService& s)
{
    Texts masks, texts(5);
    bool done = false;
    EXPECT_TRUE(s.GetModemLogLogMasks(masks) == 0 && s.GetModemLogDirectPackConfig(texts[0]) == 0 &&
                s.GetRemoteDevicesList(texts[1]) == 0 && s.FetchRemoteDevicesLogs("a\"b", texts[2], INT64_MIN) == 0 &&
                s.QueryRemoteDevicesLogs("", texts[3]) == 0 && s.QueryProtocolData("\n", texts[4]) == 0);
    EXPECT_EQ(masks, (Texts{R"({"configKey":"ap","value":"0x0"})", R"({"configKey":"cp","value":"0x0"})"}));
    EXPECT_EQ(texts, (Texts{R"({"directPack":false})", R"({"devices":[]})",
                            R"({"request":"a\"b","value":-9223372036854775808,"logs":[]})",
                            R"({"request":"","logs":[]})", R"({"request":"\n","data":""})"}));
    EXPECT_TRUE(s.SendModemLogCommand(ItemOf("AT", "1"), done) == 0 && done);
    EXPECT_TRUE(s.SendModemLogCommand("AT", done) == 2 && !done && s.HandleBluetoothCallPcmLogSwitch(true) == 0);
}

TEST(Dbus, EveryOperationAnswersTheSameEmbeddedAndFromAfar)
{
    PrivateBus bus;
    const Process process(bus.serve);
    for (const Proxy& service : {Proxy(new ReferenceService), bus.Found()}) {
        TryLogs(*service);
        TryTheRest(*service);
    }
}

TEST(Dbus, ServiceAndBusMayGoAndComeBack)
{
    PrivateBus bus;
    const std::string onSystemBus = "env DBUS_SYSTEM_BUS_ADDRESS=" + bus.address + " " + PROGRAM + " --system";
    // By which signal the service goes; 0 when the bus does. The last two break a call off.
    for (const int signal : {SIGTERM, SIGINT, 0, SIGKILL}) {
        Process service(signal == SIGINT ? onSystemBus : bus.serve);
        const Proxy proxy = bus.Found();
        bool on = true;
        EXPECT_TRUE(proxy->GetModemLogStatus(on) == 0 && !on && proxy->HandleModemLogSwitch(true, on) == 0 && on);
        if (signal == SIGTERM || signal == SIGINT) {
            service.Signal(signal);
            EXPECT_EQ(service.Wait(), 0);
        } else {
            service.Signal(SIGSTOP);
            auto code = std::async(std::launch::async, [&] { return proxy->GetModemLogStatus(on); });
            EXPECT_EQ(code.wait_for(200ms), std::future_status::timeout);
            signal == SIGKILL ? service.Signal(SIGKILL) : bus.Stop();
            EXPECT_EQ(code.wait_for(2s), std::future_status::ready);
            EXPECT_EQ(code.get(), IPC_SERVICE_GONE);
        }
        EXPECT_EQ(bus.Find(), nullptr);
        EXPECT_TRUE(proxy->GetModemLogStatus(on) == IPC_SERVICE_GONE && on);
        signal == 0 ? bus.Start() : void();
    }
}

// A service that answers every call in the same way.
struct ForeignService {
    ForeignService(const PrivateBus& bus, std::function<void(sd_bus_message*)> toAnswer) : answer(std::move(toAnswer))
    {
        const auto onCall = [](sd_bus_message* call, void* self, sd_bus_error*) {
            return static_cast<ForeignService*>(self)->answer(call), 1;
        };
        EXPECT_TRUE(sd_bus_new(&connection) >= 0 && sd_bus_set_address(connection, bus.address.c_str()) >= 0 &&
                    sd_bus_set_bus_client(connection, 1) >= 0 && sd_bus_start(connection) >= 0 &&
                    sd_bus_add_object(connection, nullptr, SERVICE_PATH, onCall, this) >= 0 &&
                    sd_bus_request_name(connection, SERVICE_NAME, 0) >= 0);
        thread = std::thread([this] {
            while (!ended) { sd_bus_process(connection, nullptr) > 0 ? 0 : sd_bus_wait(connection, 10'000); }
        });
    }
    ~ForeignService() { ended = true, thread.join(), sd_bus_close_unref(connection); }

    const std::function<void(sd_bus_message*)> answer;
    sd_bus* connection = nullptr;
    std::atomic<bool> ended = false;
    std::thread thread;
};

TEST(Dbus, ForeignAnswers)
{
    PrivateBus bus;
    constexpr int32_t TYPES = IPC_WRONG_TYPES, ERROR = IPC_ERROR_ANSWER;
    // An answer, and the codes for who wants a boolean, a text, a list, or nothing but a code.
    const std::pair<int (*)(sd_bus_message*), Codes> cases[] = {
        {[](auto* call) { return sd_bus_reply_method_return(call, "ib", -7, 1); }, {-7, TYPES, TYPES, TYPES}},
        {[](auto* call) { return sd_bus_reply_method_return(call, "is", -7, "seen"); }, {TYPES, -7, TYPES, TYPES}},
        {[](auto* call) { return sd_bus_reply_method_return(call, "ias", -7, 1, "seen"); }, {TYPES, TYPES, -7, TYPES}},
        {[](auto* call) { return sd_bus_reply_method_return(call, "i", -7); }, {TYPES, TYPES, TYPES, -7}},
        {[](auto* call) { return sd_bus_reply_method_return(call, "ub", 0, 1); }, {TYPES, TYPES, TYPES, TYPES}},
        {[](auto* call) { return sd_bus_reply_method_return(call, "ibb", 0, 1, 1); }, {TYPES, TYPES, TYPES, TYPES}},
        {[](auto* call) { return sd_bus_reply_method_return(call, ""); }, {TYPES, TYPES, TYPES, TYPES}},
        {[](auto* call) { return sd_bus_reply_method_errno(call, EIO, nullptr); }, {ERROR, ERROR, ERROR, ERROR}},
        // They look like the bus's own.
        {[](auto* call) { return sd_bus_reply_method_errorf(call, SD_BUS_ERROR_NO_REPLY, "-"); }, Codes(4, ERROR)},
        {[](auto* call) { return sd_bus_reply_method_errorf(call, SD_BUS_ERROR_TIMEOUT, "-"); }, Codes(4, ERROR)},
    };
    std::atomic<size_t> row = 0;
    const ForeignService service(bus, [&](sd_bus_message* call) { EXPECT_GE(cases[row].first(call), 0); });
    const Proxy proxy = bus.Find();
    for (; row < std::size(cases); ++row) {
        const Codes& codes = cases[row].second;
        bool status = false;
        std::string text = "kept";
        Texts list = {"kept"};
        EXPECT_EQ((Codes{proxy->GetModemLogStatus(status), proxy->GetRemoteDevicesList(text),
                         proxy->GetModemLogLogMasks(list), proxy->HandleBluetoothCallPcmLogSwitch(true)}),
                  codes) << row;
        EXPECT_EQ(status, codes[0] == -7) << row;
        EXPECT_EQ(text + list.at(0), (codes[1] == -7 ? "seenkept" : codes[2] == -7 ? "keptseen" : "keptkept")) << row;
    }
}

TEST(Dbus, SilenceEndsAtTheLimitAndALateAnswerIsNobodys)
{
    PrivateBus bus;
    const ForeignService service(bus, [calls = 0](sd_bus_message* call) mutable {
        std::this_thread::sleep_for(calls == 0 ? 500ms : 0ms);
        sd_bus_reply_method_return(call, "ib", ++calls, 1);
    });
    const Proxy proxy = bus.Find(300ms);
    bool status = false;
    EXPECT_TRUE(proxy->GetModemLogStatus(status) == IPC_TIMEOUT && !status);
    std::this_thread::sleep_for(100ms); // The late answer comes during the next call.
    EXPECT_EQ(proxy->GetModemLogStatus(status), 2);
}

TEST(Dbus, CallsOfSeveralThreadsAreInFlightTogether)
{
    PrivateBus bus;
    std::vector<BusMessage> calls;
    const ForeignService service(bus, [&](sd_bus_message* call) {
        calls.emplace_back(sd_bus_message_ref(call));
        if (calls.size() == 4) { // It answers none of them earlier.
            std::this_thread::sleep_for(100ms);
            for (const BusMessage& waiting : calls) { sd_bus_reply_method_return(waiting.get(), "ib", 0, 1); }
            calls.clear();
        }
    });
    const Proxy shared = bus.Find(2s);
    steady_clock::duration taken = 1s;
    for (int round = 0; round < 5 && taken > 200ms && !HasFailure(); ++round) { // The machine may be busy.
        const steady_clock::time_point start = steady_clock::now();
        std::future<int32_t> codes[4];
        for (size_t i = 0; i < 4; ++i) {
            codes[i] = std::async(std::launch::async, [proxy = i % 2 == 0 ? shared : bus.Find(2s)] {
                bool status = false;
                return proxy->GetModemLogStatus(status) + !status;
            });
        }
        for (std::future<int32_t>& code : codes) { EXPECT_EQ(code.get(), 0); }
        taken = steady_clock::now() - start;
    }
    EXPECT_LT(taken, 200ms);
}

TEST(Dbus, ActivationCountsForTheLimit)
{
    const PrivateBus broken("false"), silent("sleep 2"), late("sleep 2"), good(PROGRAM + " --session");
    steady_clock::time_point start = steady_clock::now();
    EXPECT_TRUE(broken.Find() == nullptr && silent.Find(300ms) == nullptr);
    EXPECT_LT(steady_clock::now() - start, 900ms);
    bool status = true;
    EXPECT_TRUE(good.Found()->GetModemLogStatus(status) == 0 && !status);
    start = steady_clock::now();
    const auto service = std::async(std::launch::async, [&] {
        std::this_thread::sleep_for(600ms);
        return std::make_unique<ForeignService>(late, [calls = 0](sd_bus_message* call) mutable {
            std::this_thread::sleep_for(calls == 0 ? 0ms : 1200ms);
            ++calls > 1 ? sd_bus_reply_method_return(call, "ib", 0, 1) : 0;
        });
    });
    const Proxy proxy = late.Find(1600ms);
    ASSERT_TRUE(proxy != nullptr && proxy->GetModemLogStatus(status) == IPC_TIMEOUT);
    EXPECT_LT(steady_clock::now() - start, 2s);
    EXPECT_EQ(proxy->GetModemLogStatus(status), 0); // Only the first call shares its time with the activation.
}

TEST(Dbus, BadInputLeavesTheServiceAsItWas)
{
    PrivateBus bus;
    const Process service(bus.serve);
    const Proxy proxy = bus.Found();
    bool done = false;
    ASSERT_EQ(proxy->HandleModemLogSwitch(true, done), 0);
    for (const std::string& text : {std::string("\xff"), std::string("a\0b", 3)}) {
        EXPECT_EQ(proxy->SendModemLogCommand(text, done), IPC_ERROR_ANSWER);
    }
    const Deadline deadline = steady_clock::now() + 5s;
    const auto connection = BusConnection::Open(bus.address, deadline);
    for (const char* method : {"HandleModemLogSwitch", "ChangeModemLogConfig", "GetModemLogStatus", "NoSuchMethod"}) {
        const BusMessage call = connection->NewCall(method);
        BusMessage answer;
        ASSERT_TRUE(Append(call.get(), std::string("text")));
        EXPECT_EQ(connection->Call(call, deadline, answer), IPC_ERROR_ANSWER) << method;
    }
    EXPECT_TRUE(done && proxy->GetModemLogStatus(done = false) == 0 && done);
}

// Each took the service, or the bus's patience with it.
TEST(Dbus, RequestsPastTheLimitsAreRefusedAndTheServiceLives)
{
    PrivateBus bus;
    const Process service(bus.serve);
    const Proxy proxy = bus.Found();
    bool done = false;
    Texts items = {ItemOf("k", std::string(900'000, 'x'))};
    ASSERT_EQ(proxy->HandleModemLogSwitch(true, items, done), 0);
    for (const Texts& keys : {Texts(70, "k"), Texts(20'000, "k"), Texts(4'000'000, "")}) {
        Texts asked = keys;
        Texts values = {"left over"};
        EXPECT_EQ(proxy->GetModemLogConfig(asked, values), 2);
        EXPECT_EQ(values, Texts());
    }
    Texts tooMany(1'000'000, ItemOf("", ""));
    EXPECT_TRUE(proxy->ChangeModemLogConfig(tooMany, done) == 2 && !done);
    std::string response = "left over";
    EXPECT_EQ(proxy->QueryProtocolData(std::string(16'000'001, 'x'), response), 2);
    EXPECT_EQ(response, "");
    EXPECT_TRUE(proxy->GetModemLogStatus(done) == 0 && done);
}

TEST(LogServiceProgram, EndsWhateverItWaitsFor)
{
    PrivateBus bus;
    Process noReader("sh -c 'mkfifo " + bus.folder.string() + "/unread && exec " + bus.serve + " --verbose 2<>" +
                     bus.folder.string() + "/unread'");
    bus.Found();
    const Proxy impatient = bus.Find(300ms);
    bool on = false;
    while (impatient->GetModemLogStatus(on) == 0) {
    }
    noReader.Signal(SIGTERM);
    EXPECT_EQ(noReader.Wait(), 0);

    Process serving(bus.serve);
    bus.Found();
    bus.daemon->Signal(SIGSTOP);
    Process starting(bus.serve);
    std::this_thread::sleep_for(200ms);
    for (Process* service : {&serving, &starting}) {
        service->Signal(SIGTERM);
        EXPECT_EQ(service->Wait(), 0); // The bus's own limit of 25 s would have been an error.
    }
}

TEST(LogServiceProgram, HasItsExitStatus)
{
    const std::pair<const char*, int> cases[] = {
        {"--help", 0}, {"--address=unix:path=/nonexistent", 1}, {"--address", 2}, {"--quiet", 2}, {"extra", 2},
    };
    for (const auto& [words, status] : cases) { EXPECT_EQ(Process(PROGRAM + " " + words).Wait(), status) << words; }
}

} // namespace OHOS::Host
