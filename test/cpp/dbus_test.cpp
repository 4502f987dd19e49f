// The log service over D-Bus: the client library's proxy, the process zelk-log-service, and services that misbehave.
#include <array>
#include <future>
#include <gtest/gtest.h>
#include <stdexcept>

#include <sdbus-c++/sdbus-c++.h>

#include "dbus_log_service.h"
#include "dbus_names.h"
#include "message_values.h"
#include "private_bus.h"
#include "reference_service.h"
#include "zelk_service_api/client.h"

namespace OHOS::Host {
namespace {

using namespace std::chrono_literals;
using HiviewDFX::IZelkLogService;
using std::chrono::steady_clock;
using Test::Eventually;
using Test::PrivateBus;
using Test::Process;
using Texts = std::vector<std::string>;
using Proxy = sptr<IZelkLogService>;

constexpr const char* PROGRAM = ZELK_LOG_SERVICE_PROGRAM;

// ZELK_LOG_SERVICE is read once in a process, so all tests share the bus's address.
PrivateBus& Bus()
{
    static PrivateBus bus;
    return bus;
}

class DbusTest : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        setenv("ZELK_LOG_SERVICE", Bus().Address().c_str(), 1); // NOLINT(concurrency-mt-unsafe)
    }
    // The bus may not have noticed yet that the service of the test before is dead.
    void SetUp() override
    {
        ASSERT_TRUE(Eventually([&] { return client_.GetProxy() == nullptr; }));
    }
    Proxy Found()
    {
        Proxy proxy;
        if (!Eventually([&] { return (proxy = client_.GetProxy()) != nullptr; })) {
            throw std::runtime_error("no service");
        }
        return proxy;
    }

    HiviewDFX::Client client_;
    const Texts serve_ = {PROGRAM, "--address", Bus().Address()};
};

double Seconds(const std::function<void()>& action)
{
    const steady_clock::time_point start = steady_clock::now();
    action();
    return std::chrono::duration<double>(steady_clock::now() - start).count();
}

// One call and everything it answers, as text.
using Step = std::function<std::string(IZelkLogService&)>;

template <typename Operation>
Step AnswersTexts(Operation operation)
{
    return [operation](IZelkLogService& service) {
        Texts values = {"before"};
        std::string text = std::to_string(operation(service, values));
        for (const std::string& value : values) {
            text += "|" + value;
        }
        return text;
    };
}

template <typename Operation>
Step AnswersText(Operation operation)
{
    return AnswersTexts([operation](IZelkLogService& s, Texts& values) { return operation(s, values[0]); });
}

template <typename Operation>
Step AnswersBool(Operation operation)
{
    return [operation](IZelkLogService& service) {
        bool result = false;
        const int32_t code = operation(service, result);
        return std::to_string(code) + (result ? "|true" : "|false");
    };
}

std::string ItemOf(const std::string& key, const std::string& value)
{
    return R"({"configKey":")" + key + R"(","value":)" + value + "}";
}

TEST_F(DbusTest, EveryOperationAnswersAsTheEmbeddedServiceDoes)
{
    const std::string large(1 << 20, 'x');
    Texts keys;
    Texts items = {ItemOf("large", large), ItemOf("ä€😀\"\n", "{}")};
    for (int index = 0; index < 10000; ++index) {
        keys.push_back("key" + std::to_string(index));
        items.push_back(ItemOf(keys.back(), "\"" + keys.back() + "\""));
    }
    keys.insert(keys.end(), {"large", "ä€😀\"\n", ""});
    Texts bad = {"bad"};
    Texts none;
    std::vector<Step> steps;
    for (Texts& list : std::array<std::reference_wrapper<Texts>, 3>{items, bad, none}) {
        steps.push_back(AnswersBool([&](auto& s, bool& r) { return s.ChangeModemLogConfig(list, r); }));
        steps.push_back(AnswersBool([&](auto& s, bool& r) { return s.HandleTcpdumpSwitch(true, list, r); }));
        steps.push_back(AnswersBool([&](auto& s, bool& r) { return s.HandleModemLogSwitch(true, list, r); }));
        steps.push_back(AnswersBool([&](auto& s, bool& r) { return s.ChangeTcpdumpConfig(list, r); }));
        steps.push_back(AnswersBool([&](auto& s, bool& r) { return s.GetModemLogStatus(r); }));
        steps.push_back(AnswersBool([&](auto& s, bool& r) { return s.GetTcpdumpStatus(r); }));
    }
    steps.push_back(AnswersTexts([&](auto& s, Texts& v) { return s.GetModemLogConfig(keys, v); }));
    steps.push_back(AnswersTexts([&](auto& s, Texts& v) { return s.GetTcpdumpConfig(keys, v); }));
    steps.push_back(AnswersTexts([&](auto& s, Texts& v) { return s.GetModemLogConfig(none, v); }));
    steps.push_back(AnswersTexts([](auto& s, Texts& v) { return s.GetModemLogLogMasks(v); }));
    steps.push_back(AnswersText([](auto& s, std::string& v) { return s.GetModemLogDirectPackConfig(v); }));
    steps.push_back(AnswersBool([](auto& s, bool& r) { return s.HandleModemLogSwitch(false, r); }));
    steps.push_back(AnswersBool([](auto& s, bool& r) { return s.GetModemLogStatus(r); }));
    steps.push_back(AnswersBool([](auto& s, bool& r) { return s.HandleTcpdumpSwitch(false, r); }));
    steps.push_back(AnswersBool([](auto& s, bool& r) { return s.GetTcpdumpStatus(r); }));
    steps.push_back(AnswersBool([&](auto& s, bool& r) { return s.SendModemLogCommand(items[0], r); }));
    steps.push_back(AnswersBool([](auto& s, bool& r) { return s.SendModemLogCommand("", r); }));
    steps.push_back(AnswersBool([](auto& s, bool&) { return s.HandleBluetoothCallPcmLogSwitch(true); }));
    steps.push_back(AnswersText([](auto& s, auto& v) { return s.FetchRemoteDevicesLogs("a\"", v, INT64_MIN); }));
    steps.push_back(AnswersText([&](auto& s, auto& v) { return s.QueryRemoteDevicesLogs(large, v); }));
    steps.push_back(AnswersText([](auto& s, auto& v) { return s.QueryProtocolData("\x01", v); }));
    steps.push_back(AnswersText([](auto& s, auto& v) { return s.GetRemoteDevicesList(v); }));

    const Process service(serve_);
    Proxy remote = Found();
    ReferenceService embedded;
    for (size_t index = 0; index < steps.size(); ++index) {
        EXPECT_TRUE(steps[index](*remote) == steps[index](embedded)) << "step " << index;
    }
}

TEST_F(DbusTest, ServiceAndBusMayComeAndGo)
{
    bool on = false;
    for (int round = 0; round < 2; ++round) {
        Bus().Stop();
        EXPECT_EQ(client_.GetProxy(), nullptr);
        Bus().Start();
        Process service(serve_);
        const Proxy proxy = Found();
        EXPECT_EQ(proxy->HandleModemLogSwitch(true, on), 0);
        service.Signal(round == 0 ? SIGTERM : SIGINT);
        EXPECT_EQ(service.Wait(), 0);
        EXPECT_EQ(client_.GetProxy(), nullptr);
        EXPECT_EQ(proxy->GetModemLogStatus(on), IPC_SERVICE_GONE);
        EXPECT_TRUE(on);

        const Process next(serve_);
        EXPECT_EQ(Found()->GetModemLogStatus(on), 0);
        EXPECT_FALSE(on);
    }
}

TEST_F(DbusTest, DeathInFlightEndsTheCallAtOnce)
{
    for (const bool busDies : {false, true}) {
        const Process service(serve_);
        const Proxy proxy = Found();
        service.Signal(SIGSTOP);
        bool status = true;
        auto code = std::async(std::launch::async, [&] { return proxy->GetModemLogStatus(status); });
        EXPECT_EQ(code.wait_for(200ms), std::future_status::timeout);
        if (busDies) {
            Bus().Stop();
            Bus().Start();
        } else {
            service.Signal(SIGKILL);
        }
        EXPECT_EQ(code.wait_for(2s), std::future_status::ready);
        EXPECT_EQ(code.get(), IPC_SERVICE_GONE);
        EXPECT_TRUE(status);
    }
    const Process service(serve_);
    Texts masks;
    EXPECT_EQ(Found()->GetModemLogLogMasks(masks), 0);
}

// What a service does with a call, and the types of its answers.
struct Answer {
    std::string types;
    sdbus::method_callback give;
};

// A service of which only GetModemLogStatus is there.
class ForeignService {
public:
    explicit ForeignService(Answer answer)
        : bus_(sdbus::createSessionBusConnectionWithAddress(Bus().Address())),
          object_(sdbus::createObject(*bus_, SERVICE_PATH))
    {
        object_->registerMethod(SERVICE_INTERFACE, "GetModemLogStatus", "", answer.types, std::move(answer.give));
        object_->finishRegistration();
        bus_->requestName(SERVICE_NAME);
        bus_->enterEventLoopAsync();
    }
    ~ForeignService()
    {
        bus_->leaveEventLoop();
        bus_->releaseName(SERVICE_NAME);
    }
    ForeignService(const ForeignService&) = delete;
    ForeignService& operator=(const ForeignService&) = delete;

private:
    std::unique_ptr<sdbus::IConnection> bus_;
    std::unique_ptr<sdbus::IObject> object_;
};

template <typename... Values>
Answer Answering(Values... values)
{
    return {(std::string() + ... + sdbus::signature_of<Values>::str()), [values...](const sdbus::MethodCall& call) {
                sdbus::MethodReply reply = call.createReply();
                static_cast<void>((reply << ... << values));
                reply.send();
            }};
}

Answer Failing(const std::string& name)
{
    return {"", [name](const sdbus::MethodCall&) {
                throw sdbus::Error("org.freedesktop.DBus.Error." + name, "text");
            }};
}

TEST_F(DbusTest, ForeignAnswers)
{
    struct Case {
        const char* name;
        Answer answer;
        int32_t code;
        bool status;
    };
    // The status stands at true before the call.
    const std::vector<Case> cases = {
        {"a code and an answer", Answering(int32_t{-7}, false), -7, false},
        {"another type", Answering(int32_t{0}, std::string("false")), IPC_WRONG_TYPES, true},
        {"another type of code", Answering(uint32_t{0}, false), IPC_WRONG_TYPES, true},
        {"too much", Answering(int32_t{0}, false, false), IPC_WRONG_TYPES, true},
        {"too little", Answering(int32_t{0}), IPC_WRONG_TYPES, true},
        {"nothing", Answering(), IPC_WRONG_TYPES, true},
        {"an error", Failing("Failed"), IPC_ERROR_ANSWER, true},
        {"an error that looks like the bus's", Failing("NoReply"), IPC_ERROR_ANSWER, true},
    };
    for (const Case& test : cases) {
        const ForeignService service(test.answer);
        bool status = true;
        Texts values = {"before"};
        const Proxy proxy = Found();
        EXPECT_EQ(proxy->GetModemLogStatus(status), test.code) << test.name;
        EXPECT_EQ(status, test.status) << test.name;
        EXPECT_EQ(proxy->GetModemLogLogMasks(values), IPC_ERROR_ANSWER);
        EXPECT_EQ(values, Texts{"before"});
    }
}

TEST_F(DbusTest, SilenceEndsAtTheLimitAndALateAnswerIsNobodys)
{
    int32_t calls = 0;
    const ForeignService service({"ib", [&](const sdbus::MethodCall& call) {
                                      std::this_thread::sleep_for(calls == 0 ? 400ms : 0ms);
                                      Answering(++calls, true).give(call);
                                  }});
    const auto pool = std::make_shared<BusPool>(Bus().Address());
    const Proxy proxy = DbusLogService::Find(pool, 200ms);
    bool status = false;
    EXPECT_EQ(proxy->GetModemLogStatus(status), IPC_TIMEOUT);
    EXPECT_FALSE(status);
    std::this_thread::sleep_for(300ms);
    EXPECT_EQ(proxy->GetModemLogStatus(status), 2);
}

TEST_F(DbusTest, CallsOfSeveralThreadsAreInFlightTogether)
{
    std::vector<std::thread> answers;
    {
        const ForeignService service({"ib", [&](const sdbus::MethodCall& call) {
                                          answers.emplace_back([call] {
                                              std::this_thread::sleep_for(300ms);
                                              Answering(int32_t{0}, true).give(call);
                                          });
                                      }});
        const Proxy shared = Found();
        // Two at a time would take 0.8 s.
        EXPECT_LT(Seconds([&] {
                      std::array<std::future<bool>, 4> calls;
                      for (size_t index = 0; index < calls.size(); ++index) {
                          calls[index] = std::async(std::launch::async, [&, index] {
                              bool status = false;
                              const Proxy proxy = index % 2 == 0 ? shared : client_.GetProxy();
                              return proxy->GetModemLogStatus(status) == 0 && status;
                          });
                      }
                      for (std::future<bool>& call : calls) {
                          EXPECT_TRUE(call.get());
                      }
                  }),
                  0.75);
        for (std::thread& thread : answers) {
            thread.join();
        }
    }
}

TEST_F(DbusTest, ActivationCountsForTheLimit)
{
    const std::string service = std::string(PROGRAM) + " --session";
    const std::string pidFile = Bus().Folder() / "pid";
    const auto pool = std::make_shared<BusPool>(Bus().Address());
    bool status = true;

    Bus().Activate(SERVICE_NAME, "exec sleep 2");
    Bus().Stop();
    Bus().Start();
    EXPECT_LT(Seconds([&] { EXPECT_EQ(DbusLogService::Find(pool, 300ms), nullptr); }), 0.9);

    Bus().Activate(SERVICE_NAME, "echo $$ > " + pidFile + "; sleep 0.6; exec " + service);
    Bus().Stop();
    Bus().Start();
    EXPECT_LT(Seconds([&] {
                  const Proxy proxy = DbusLogService::Find(pool, 1600ms);
                  ASSERT_NE(proxy, nullptr);
                  pid_t pid = 0;
                  std::ifstream(pidFile) >> pid;
                  kill(pid, SIGSTOP);
                  EXPECT_EQ(proxy->GetModemLogStatus(status), IPC_TIMEOUT);
                  kill(pid, SIGCONT);
                  // Only the first call has to share its time with the activation.
                  EXPECT_EQ(proxy->GetModemLogStatus(status), 0);
              }),
              2.0);
    EXPECT_FALSE(status);
    std::filesystem::remove_all(Bus().Folder() / "services" / "dev.zelk.LogService.service");
    Bus().Stop();
    Bus().Start();
}

TEST_F(DbusTest, BadInputLeavesTheServiceAsItWas)
{
    const Process service(serve_);
    const Proxy proxy = Found();
    bool done = false;
    ASSERT_EQ(proxy->HandleModemLogSwitch(true, done), 0);
    for (const std::string& text : {std::string("\xff"), std::string("a\0b", 3)}) {
        EXPECT_EQ(proxy->SendModemLogCommand(text, done), IPC_ERROR_ANSWER);
    }
    const Deadline deadline = steady_clock::now() + 5s;
    const auto bus = BusConnection::Open(Bus().Address(), deadline);
    for (const char* method : {"HandleModemLogSwitch", "ChangeModemLogConfig", "GetModemLogStatus", "NoSuchMethod"}) {
        const BusMessage call = bus->NewCall(method);
        BusMessage answer;
        ASSERT_TRUE(Append(call, std::string("text")));
        EXPECT_EQ(bus->Call(call, deadline, answer), IPC_ERROR_ANSWER) << method;
    }
    done = false;
    EXPECT_EQ(proxy->GetModemLogStatus(done), 0);
    EXPECT_TRUE(done);
}

TEST_F(DbusTest, CommandLine)
{
    const Process service(serve_);
    ASSERT_NE(Found(), nullptr);
    const std::vector<std::pair<Texts, int>> cases = {
        {{"--help"}, 0},
        {{"--address", Bus().Address()}, 1},
        {{"--address=unix:path=/nonexistent"}, 1},
        {{"--address"}, 2},
        {{"--quiet"}, 2},
        {{"extra"}, 2},
    };
    for (const auto& [words, status] : cases) {
        Texts line = {PROGRAM};
        line.insert(line.end(), words.begin(), words.end());
        EXPECT_EQ(Process(line).Wait(), status) << words[0];
    }
}

} // namespace
} // namespace OHOS::Host
