// The log service over D-Bus: the client's proxy, the process zelk-log-service, and buses and services that misbehave.
#include <cstdlib>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <tuple>
#include <type_traits>

#include "host/hilog/capture.h"
#include "in_threads.h"
#include "private_bus.h"
#include "service/dbus/message_values.h"
#include "service/reference/reference_service.h"

namespace {

// How often `new` still succeeds on this thread; any number of times while it is negative.
thread_local int t_allocationsLeft = -1;

} // namespace

void* operator new(size_t size)
{
    t_allocationsLeft -= t_allocationsLeft > 0 ? 1 : 0;
    void* memory = t_allocationsLeft == 0 ? nullptr : std::malloc(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

// Not inline: where the compiler sees `free` follow `new` it takes them for a mismatch.
[[gnu::noinline]] void operator delete(void* memory) noexcept
{
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, size_t) noexcept
{
    std::free(memory);
}

namespace OHOS::Host {

using namespace std::string_literals;
using std::chrono::steady_clock;
using Codes = std::vector<int32_t>;

const std::string PROGRAM = Quoted(ZELK_LOG_SERVICE_PROGRAM);
constexpr auto* BUS = PlayedBus::BUS;
constexpr auto* OWNER = PlayedBus::OWNER;

std::string Serving(const Bus& bus)
{
    return "exec " + PROGRAM + " --address " + bus.address;
}

std::string ItemOf(const std::string& key, const std::string& value)
{
    return R"({"configKey":")" + key + R"(","value":)" + value + "}";
}

// "code on" or "code off".
std::string StatusBy(const Proxy& proxy)
{
    if (!proxy) {
        return "no service";
    }
    bool on = false;
    const int32_t code = proxy->GetModemLogStatus(on);
    return std::to_string(code) + (on ? " on" : " off");
}

class Service : public testing::Test {
protected:
    const PrivateBus bus;
    Process process{Serving(bus)};
    const Proxy proxy = bus.WaitForService();
};

using Answer = std::pair<int32_t, Value>;

// The code, and what is answered.
Answer Call(const Proxy& service, const char* method, ArgumentValues arguments)
{
    Outcome outcome = FindOperation(method)->call(*service, arguments);
    return {outcome.code, std::move(outcome.answer)};
}

TEST_F(Service, EveryOperationAnswersTheSameEmbeddedAndOverDbus)
{
    const Texts keys = {"ä😀\"", "never", "a", "a"};
    const Texts three = {ItemOf("a", "1"), ItemOf("a", R"({"b":"\n"})"), ItemOf("ä😀\"", "")};
    const Texts one = {ItemOf("a", "3")};
    const Texts bad = {ItemOf("a", "2"), ""}; // Nothing of the call takes effect.
    const std::string b = ItemOf("a", R"("{\"b\":\"\\n\"}")");
    const std::string a = ItemOf("a", R"("3")");
    const std::string never = ItemOf("never", R"("{}")");
    const std::string request = "a\"b";
    const std::tuple<const char*, ArgumentValues, int32_t, Value> rows[] = {
        // Modem log and packet capture keep switch and configuration apart.
        {"ChangeModemLogConfig", {three}, 0, true},
        {"HandleTcpdumpSwitchWithConfigs", {true, one}, 0, true},
        {"HandleTcpdumpSwitchWithConfigs", {false, bad}, 2, false},
        {"GetModemLogStatus", {}, 0, false},
        {"GetTcpdumpStatus", {}, 0, true},
        {"GetModemLogConfig", {keys}, 0, Texts{ItemOf(R"(ä😀\")", R"("")"), never, b, b}},
        {"GetTcpdumpConfig", {keys}, 0, Texts{ItemOf(R"(ä😀\")", R"("{}")"), never, a, a}},

        {"GetModemLogLogMasks", {}, 0, Texts{ItemOf("ap", R"("0x0")"), ItemOf("cp", R"("0x0")")}},
        {"GetModemLogDirectPackConfig", {}, 0, R"({"directPack":false})"s},
        {"GetRemoteDevicesList", {}, 0, R"({"devices":[]})"s},
        {"FetchRemoteDevicesLogs",
         {request, INT64_MIN},
         0,
         R"({"request":"a\"b","value":-9223372036854775808,"logs":[]})"s},
        {"QueryRemoteDevicesLogs", {""s}, 0, R"({"request":"","logs":[]})"s},
        {"QueryProtocolData", {"\n"s}, 0, R"({"request":"\n","data":""})"s},
        {"SendModemLogCommand", {one[0]}, 0, true},
        {"SendModemLogCommand", {request}, 2, false},
        {"HandleBluetoothCallPcmLogSwitch", {true}, 0, Nothing()},
    };
    for (const Proxy& service : {Proxy(new ReferenceService), proxy}) {
        for (const auto& [method, arguments, code, answer] : rows) {
            EXPECT_EQ(Call(service, method, arguments), Answer(code, answer)) << method;
        }
    }
}

// And stays on its connection although it asks the bus whether answers arrive: at once, and again a second later.
TEST_F(Service, DescribesItselfAsItsFileDoes)
{
    const std::string settings = "bus=" + bus.address + " folder=" + bus.folder.string() + " service=" + SERVICE_NAME +
                                 " path=" + SERVICE_PATH + " file=" + Quoted(ZELK_LOG_SERVICE_INTERFACE);
    const std::string script = settings + R"sh(
        ask() { dbus-send --bus=$bus --print-reply=literal "$@"; }
        owner() { ask --dest=org.freedesktop.DBus / org.freedesktop.DBus.GetNameOwner string:$service; }
        rows() { sed '1,/dev.zelk.LogService1/d' | grep -oE '<(method|property|arg)[^/>]*'; }
        describe() { ask --dest=$service $path org.freedesktop.DBus.Introspectable.Introspect | rows; }
        before=$(owner)
        dbus-monitor --address $bus member=Ping >$folder/seen &
        until grep -q member $folder/seen; do sleep 0.1; done
        describe >$folder/rows; describe >/dev/null; sleep 4; kill $!
        test "$(cat $folder/rows)" = "$(rows <"$file")" && test "$before" && test "$before" = "$(owner)" &&
            test $(grep -c member=Ping $folder/seen) = 2)sh";
    EXPECT_EQ(Process(script).End(), 0);
}

BusHandle ConnectionTo(const Bus& bus)
{
    BusHandle client;
    EXPECT_GE(OpenBus(bus.address, 20s, client), 0);
    return client;
}

BusMessage NewCall(const BusHandle& client, const char* method, const ArgumentValues& arguments)
{
    sd_bus_message* raw = nullptr;
    sd_bus_message_new_method_call(client.get(), &raw, SERVICE_NAME, SERVICE_PATH, SERVICE_INTERFACE, method);
    EXPECT_TRUE(Append(raw, arguments[0]) >= 0 && Append(raw, arguments[1]) >= 0);
    return BusMessage(raw);
}

// Adds the code of an answer, or the property of a signal, to `text`.
int Note(sd_bus_message* message, void* text, sd_bus_error*)
{
    const char* name = "";
    int value = -1;
    if (sd_bus_message_read(message, "i", &value) < 0) {
        sd_bus_message_read(message, "sa{sv}as", &name, 1, &name, "b", &value, 0);
    }
    *static_cast<std::string*>(text) += name + std::to_string(value) + ", ";
    return 1;
}

TEST_F(Service, TellsOfEachChangeOnceAfterItsAnswer)
{
    const Texts item = {ItemOf("a", "1")};
    const Texts bad = {""};
    // The last three digits are the values of the properties.
    const std::tuple<const char*, ArgumentValues, const char*> rows[] = {
        {"HandleModemLogSwitch", {true}, "0, ModemLogOn1, 100"},
        {"HandleModemLogSwitch", {true}, "0, 100"},
        {"HandleModemLogSwitchWithConfigs", {false, bad}, "2, 100"},
        {"HandleModemLogSwitchWithConfigs", {false, item}, "0, ModemLogOn0, 000"},
        {"ChangeTcpdumpConfig", {item}, "0, 000"},
        {"HandleTcpdumpSwitch", {true}, "0, TcpdumpOn1, 010"},
        {"HandleBluetoothCallPcmLogSwitch", {true}, "0, BluetoothCallPcmLogOn1, 011"},
        {"HandleBluetoothCallPcmLogSwitch", {true}, "0, 011"},
    };
    std::string seen;
    const BusHandle client = ConnectionTo(bus);
    ASSERT_GE(sd_bus_match_signal(client.get(), nullptr, SERVICE_NAME, SERVICE_PATH, nullptr, nullptr, Note, &seen), 0);
    for (const auto& [method, arguments, expected] : rows) {
        const BusMessage call = NewCall(client, method, arguments);
        EXPECT_GE(sd_bus_call_async(client.get(), nullptr, call.get(), Note, &seen, 0), 0);
        std::string values;
        for (const char* property : {"ModemLogOn", "TcpdumpOn", "BluetoothCallPcmLogOn"}) {
            int on = -1;
            sd_bus_get_property_trivial(client.get(), SERVICE_NAME, SERVICE_PATH, SERVICE_INTERFACE, property, nullptr,
                                        'b', &on);
            values += std::to_string(on);
        }
        while (sd_bus_process(client.get(), nullptr) > 0) { // All arrived before the values did.
        }
        EXPECT_EQ(std::exchange(seen, "") + values, expected) << method;
    }
}

TEST(Dbus, ForeignAnswers)
{
    constexpr int32_t TYPES = IPC_WRONG_TYPES;
    constexpr int32_t GONE = IPC_SERVICE_GONE;
    constexpr const char* STRANGER = ":1.66";
    // An answer, and the codes for callers that expect a boolean, a text, a list, or only a code.
    const std::pair<std::function<void(sd_bus_message*)>, Codes> cases[] = {
        {[](auto* call) { PlayedBus::Reply(call, OWNER, "ib", -7, 1); }, {-7, TYPES, TYPES, TYPES}},
        {[](auto* call) { PlayedBus::Reply(call, OWNER, "is", -7, "seen"); }, {TYPES, -7, TYPES, TYPES}},
        {[](auto* call) { PlayedBus::Reply(call, OWNER, "ias", -7, 1, "seen"); }, {TYPES, TYPES, -7, TYPES}},
        {[](auto* call) { PlayedBus::Reply(call, OWNER, "i", -7); }, {TYPES, TYPES, TYPES, -7}},
        {[](auto* call) { PlayedBus::Reply(call, OWNER, "ibb", 0, 1, 1); }, Codes(4, TYPES)},
        // This looks like the bus's own.
        {[](auto* call) { PlayedBus::ReplyError(call, OWNER, SD_BUS_ERROR_NO_REPLY); }, Codes(4, IPC_ERROR_ANSWER)},
        // And these are.
        {[](auto* call) { PlayedBus::ReplyError(call, BUS, SD_BUS_ERROR_NO_REPLY); }, Codes(4, GONE)},
        {[](auto* call) { PlayedBus::ReplyError(call, BUS, SD_BUS_ERROR_SERVICE_UNKNOWN); }, Codes(4, GONE)},
        {[](auto* call) { PlayedBus::ReplyError(call, BUS, SD_BUS_ERROR_NAME_HAS_NO_OWNER); }, Codes(4, GONE)},
        {[](auto* call) { PlayedBus::ReplyError(call, BUS, SD_BUS_ERROR_TIMEOUT); }, Codes(4, IPC_TIMEOUT)},
        {[](auto* call) { PlayedBus::ReplyError(call, BUS, "org.freedesktop.DBus.Error.TimedOut"); },
         Codes(4, IPC_TIMEOUT)},
        {[](auto* call) { PlayedBus::ReplyError(call, BUS, SD_BUS_ERROR_ACCESS_DENIED); }, Codes(4, IPC_ERROR_ANSWER)},
    };
    std::atomic<size_t> row = 0;
    const PlayedBus bus([&](sd_bus_message* call) {
        EXPECT_STREQ(sd_bus_message_get_destination(call), OWNER);
        // Other peers are not believed.
        PlayedBus::Notify(call, STRANGER, STRANGER);
        PlayedBus::Reply(call, STRANGER, "ib", 66, 1);
        PlayedBus::ReplyError(call, STRANGER, SD_BUS_ERROR_NO_REPLY);
        cases[row].first(call);
    });
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
    std::string line;
    SetLogCapture([&line](const LogRecord& record) { line = record.message; });
    EXPECT_EQ(StatusBy(bus.Find(300ms)), "1002 off");
    SetLogCapture(nullptr);
    EXPECT_EQ(line, "GetModemLogStatus: code 1002: no answer in time");
    EXPECT_EQ(StatusBy(bus.Find()), "2 on");
    EXPECT_EQ(bus.connections, 1);
}

// A service that had to give up its connection cannot tell those who wait.
TEST(Dbus, AnAnswerIsNotAwaitedForLongOnceTheNameHasPassed)
{
    const PlayedBus bus([calls = 0](sd_bus_message* call) mutable {
        PlayedBus::Notify(call, BUS, "");
        std::this_thread::sleep_for(1200ms); // So far it may still answer.
        PlayedBus::Notify(call, BUS, ":1.3");
        if (++calls == 1) {
            std::this_thread::sleep_for(100ms);
            PlayedBus::Notify(call, BUS, OWNER); // For the next call.
            PlayedBus::Reply(call, OWNER, "ib", 0, 1);
        }
    });
    const Proxy proxy = bus.Find();
    EXPECT_EQ(StatusBy(proxy), "0 on");
    const steady_clock::time_point start = steady_clock::now();
    EXPECT_EQ(StatusBy(proxy), "1001 off");
    EXPECT_GE(steady_clock::now() - start, 2200ms);
    EXPECT_LT(steady_clock::now() - start, 6s);
}

TEST(Dbus, CallsOfSeveralThreadsHaveConnectionsUntilTheseAreIdle)
{
    constexpr size_t THREADS = 20;
    std::vector<BusMessage> calls;
    const PlayedBus bus([&](sd_bus_message* call) {
        calls.emplace_back(sd_bus_message_ref(call));
        if (calls.size() == THREADS) { // None of them is answered earlier.
            for (const BusMessage& waiting : calls) {
                PlayedBus::Reply(waiting.get(), OWNER, "ib", 0, 1);
            }
            calls.clear();
        }
    });
    const auto pool = std::make_shared<BusPool>(
        bus.address, [] {}, 2s);
    const Proxy proxy = FindOver(pool, 20s);
    for (int round = 0; round < 2; ++round) {
        ZelkTest::InThreads<THREADS>([&proxy](size_t) { EXPECT_EQ(StatusBy(proxy), "0 on"); });
        std::this_thread::sleep_for(700ms); // They were looked through once, and are kept.
    }
    EXPECT_EQ(bus.connections, THREADS);
    EXPECT_TRUE(Eventually([&] { return bus.open < THREADS / 2; })) << bus.open;
}

// Without its limit, a call lasts as long as the silence or the flood.
TEST(Dbus, NeitherSilenceNorAFloodHoldsACall)
{
    steady_clock::time_point start = steady_clock::now();
    EXPECT_EQ(PlayedBus(nullptr).Find(500ms), nullptr);
    EXPECT_LT(steady_clock::now() - start, 5s);

    const PlayedBus bus(PlayedBus::Flood);
    // With a pool of its own, whose connections end, and with them the flood, before the bus does.
    const Proxy proxy = FindOver(std::make_shared<BusPool>(bus.address, [] {}), 500ms);
    for (int round = 0; round < 2; ++round) { // The second starts while the flood of the first goes on.
        start = steady_clock::now();
        EXPECT_EQ(StatusBy(proxy), "1002 off");
        EXPECT_LT(steady_clock::now() - start, 5s) << round;
    }
}

TEST(Dbus, ActivationCountsForTheLimit)
{
    PlayedBus bus([&bus](sd_bus_message* call) {
        const char* name = "";
        uint32_t flags = 1;
        if (sd_bus_message_read(call, "su", &name, &flags) > 0) {
            EXPECT_STREQ(sd_bus_message_get_member(call), "StartServiceByName");
            EXPECT_STREQ(name, SERVICE_NAME);
            std::this_thread::sleep_for(1500ms);
            bus.isOwned = true;
            PlayedBus::Reply(call, BUS, "u", 1);
        } else { // The owner has left and is to be started once more.
            PlayedBus::Notify(call, BUS, "");
            PlayedBus::ReplyError(call, BUS, SD_BUS_ERROR_SERVICE_UNKNOWN);
        }
    });
    bus.isOwned = false;
    const steady_clock::time_point start = steady_clock::now();
    EXPECT_EQ(StatusBy(bus.Find(2500ms)), "1002 off");
    EXPECT_EQ(bus.Find(200ms), nullptr);
    EXPECT_LT(steady_clock::now() - start, 4s);
}

TEST(Dbus, WithMemoryShortACallFailsAndThrowsNothing)
{
    const PlayedBus bus([](sd_bus_message* call) {
        PlayedBus::Reply(call, OWNER, "ias", 0, 2, std::string(100, 'x').c_str(), std::string(100, 'y').c_str());
    });
    int32_t code = IPC_ERROR_ANSWER;
    int least = 1; // One more than the number of allocations that is enough.
    for (; code == IPC_ERROR_ANSWER && least < 1000; ++least) {
        const std::shared_ptr<BusPool> pool = std::make_shared<BusPool>(bus.address, [] {});
        Texts list = {"kept"};
        t_allocationsLeft = least;
        {
            const Proxy proxy = FindOver(pool, 20s);
            code = proxy ? proxy->GetModemLogLogMasks(list) : IPC_ERROR_ANSWER;
        }
        t_allocationsLeft = -1;
        EXPECT_EQ(list.size(), code == 0 ? 2 : 1);
    }
    EXPECT_EQ(code, 0);
    EXPECT_GT(least, 5);
}

// Each past a limit once ended the service, or its connection to the bus.
TEST_F(Service, LivesThroughBadRequests)
{
    const Answer notSent(IPC_ERROR_ANSWER, false);
    for (const std::string& text : {"\xff"s, "a\0b"s}) {
        EXPECT_EQ(Call(proxy, "SendModemLogCommand", {text}), notSent);
        EXPECT_EQ(Call(proxy, "ChangeModemLogConfig", {Texts{text, "fine"}}), notSent);
    }
    const Texts items = {ItemOf("k", std::string(900'000, 'x'))};
    EXPECT_EQ(Call(proxy, "HandleModemLogSwitchWithConfigs", {true, items}), Answer(0, true));
    EXPECT_EQ(Call(proxy, "GetModemLogConfig", {Texts(20'000, "k")}), Answer(2, Texts()));
    EXPECT_EQ(Call(proxy, "ChangeModemLogConfig", {Texts(700'000, ItemOf("", ""))}), Answer(2, false));
    const std::string tooLong(16'000'001, 'x'); // NOLINT(bugprone-string-constructor)
    EXPECT_EQ(Call(proxy, "QueryProtocolData", {tooLong}), Answer(2, ""s));
    EXPECT_EQ(StatusBy(proxy), "0 on");
}

// Runs find_service with further settings, and expects its exit status and what it reports. The first setting is the
// value of ZELK_LOG_SERVICE.
void ExpectFound(const std::string& settings, int status, const std::string& report = "^$",
                 const std::string& argument = "")
{
    const std::string command =
        "exec env ZELK_LOG_SERVICE=" + settings + " " + Quoted(ZELK_FIND_SERVICE) + " " + argument;
    EXPECT_EXIT(execl("/bin/sh", "sh", "-c", command.c_str(), nullptr), testing::ExitedWithCode(status), report)
        << settings;
}

TEST_F(Service, IsFoundAsTheSettingSays)
{
    const std::string& address = bus.address;
    const std::string report = "^zelklogservice: ZELK_LOG_SERVICE=\"[^\n]*no service\n$";
    const std::string linked = bus.folder / "a,b"; // Has to be escaped in an address.
    std::filesystem::create_directory_symlink(bus.folder, linked);
    ExpectFound("'Session\n'", 1, report);
    // libsystemd skips empty parts and transports that it does not know.
    ExpectFound("'autolaunch:;" + address + ";'", 0);
    ExpectFound("'unix:path=/nonexistent;" + address + "'", 0);
    ExpectFound(":", 1);
    // What it refuses.
    ExpectFound("unix:", 1, report);
    ExpectFound("unix:path=/" + std::string(200, 'x'), 1, report);
    ExpectFound("'unix:path=/nonexistent;unixexec:path=/bin/true'", 1, report);
    ExpectFound("session DBUS_SESSION_BUS_ADDRESS= XDG_RUNTIME_DIR=" + linked, 0);
    ExpectFound("session DBUS_SESSION_BUS_ADDRESS= XDG_RUNTIME_DIR=", 1);
    ExpectFound("session DBUS_SESSION_BUS_ADDRESS=unixexec:path=/bin/true", 1,
                "DBUS_SESSION_BUS_ADDRESS=\"[^\n]*no service\n$");
    ExpectFound("system DBUS_SYSTEM_BUS_ADDRESS=" + address, 0);
    // After the D-Bus library could not be opened, the next call tries again.
    ExpectFound(address, 0, "^zelklogservice: [^\n]*cannot open libzelk_dbus-[^\n]*no service\n$",
                "without-descriptors");
    // It is not the address that is invalid.
    PlayedBus unreadable([](sd_bus_message*) {});
    unreadable.greeting = "DATA\r\nOK zzzzzzzzzzzzzzzzzzzzzzzzzzzzzzzz\r\nAGREE_UNIX_FD\r\n";
    ExpectFound(unreadable.address, 1);
}

TEST_F(Service, HasItsExitStatus)
{
    EXPECT_EQ(Process(PROGRAM + " --help").End(), 0);
    EXPECT_EQ(Process(PROGRAM + " --address").End(), 2);
    EXPECT_EQ(Process(PROGRAM + " --quiet 2>&1 | grep -q 'unknown option --quiet; try --help'").End(), 0);
    const std::string unreachable = " --address=unix:path=/nonexistent 2>&1 | grep -q ";
    EXPECT_EQ(Process(PROGRAM + unreachable + "'nonexistent: cannot reach the bus: No such file'").End(), 0);
    EXPECT_EQ(process.End(SIGINT), 0);
    Process another("exec env DBUS_SYSTEM_BUS_ADDRESS=" + bus.address + " " + PROGRAM + " --system");
    EXPECT_EQ(StatusBy(bus.WaitForService()), "0 off");
    EXPECT_EQ(Process(Serving(bus)).End(), 1); // One at a time.
    EXPECT_EQ(another.End(SIGTERM), 0);
}

TEST(Program, EndsWhateverItWaitsFor)
{
    const PrivateBus bus;
    const std::string unread = bus.folder / "unread";
    ASSERT_EQ(mkfifo(unread.c_str(), S_IRUSR | S_IWUSR), 0);
    Process verbose(Serving(bus) + " --verbose 2<>" + unread);
    bus.WaitForService();
    const Proxy impatient = bus.Find(300ms);
    while (StatusBy(impatient) == "0 off") {
    }
    EXPECT_EQ(verbose.End(SIGTERM), 0);

    const int reader = open(unread.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    const Process unheard(Serving(bus) + " --verbose 2>" + unread);
    bus.WaitForService();
    close(reader);
    for (int call = 0; call < 2; ++call) { // The second finds whether the first has ended the service.
        EXPECT_EQ(StatusBy(bus.WaitForService()), "0 off");
    }
}

// It must not be found any more once its process has ended.
TEST(Program, GivesItsNameBackUnlessTheBusHangs)
{
    std::atomic<int> requests = 0;
    std::atomic<int> releases = 0;
    const PlayedBus hanging([&](sd_bus_message* call) {
        if (std::string_view(sd_bus_message_get_member(call)) == "ReleaseName") {
            ++releases;
        } else if (++requests == 2) { // The only one that is answered.
            PlayedBus::Reply(call, BUS, "u", 1);
        }
    });
    for (int each = 1; each <= 2; ++each) {
        Process service(Serving(hanging));
        EXPECT_TRUE(Eventually([&] { return requests == each; }));
        std::this_thread::sleep_for(100ms);
        const steady_clock::time_point start = steady_clock::now();
        EXPECT_EQ(service.End(SIGTERM), 0); // The bus's own limit of 25 s would have been an error.
        EXPECT_LT(steady_clock::now() - start, 5s);
    }
    EXPECT_EQ(releases, 1);
}

// A client that asks for answers of so many megabytes, and reads none.
BusHandle AskAndReadNothing(const Bus& bus, int answers, size_t megabytes)
{
    BusHandle client = ConnectionTo(bus);
    uint64_t cookie = 0; // Without it no answer is expected.
    for (int each = 0; each < answers; ++each) {
        const BusMessage call = NewCall(client, "GetModemLogConfig", {Texts(megabytes, "k")});
        EXPECT_GE(sd_bus_send(client.get(), call.get(), &cookie), 0);
    }
    EXPECT_GE(sd_bus_flush(client.get()), 0);
    return client;
}

// A bus that reads nothing more from a service when what its clients have not read reaches a limit: after ten answers
// of 14 MB. It has a service with an item of a megabyte.
struct LimitedBus : PrivateBus {
    LimitedBus() : PrivateBus(ZELK_SYSTEM_BUS_CONFIGURATION)
    {
        const Texts items = {ItemOf("k", std::string(999'900, 'x'))};
        EXPECT_EQ(Call(WaitForService(), "HandleModemLogSwitchWithConfigs", {true, items}), Answer(0, true));
    }

    Process service{"ASAN_OPTIONS=quarantine_size_mb=1 " + Serving(*this)};
};

TEST(Program, ServesOnWhenClientsReadNothing)
{
    const char* rounds = std::getenv("ZELK_SERVICE_FAULT_ROUNDS");
    const LimitedBus bus;
    const Proxy proxy = bus.Find(60s);
    EXPECT_EQ(Call(proxy, "GetModemLogConfig", {Texts(15, "k")}).first, 0);
    const long usual = bus.service.Peak();
    for (int round = rounds == nullptr ? 2 : std::stoi(rounds); round > 0; --round) {
        std::vector<BusHandle> clients;
        if (round % 2 == 0) {
            clients.push_back(AskAndReadNothing(bus, 50, 15));
        } else {
            clients.push_back(AskAndReadNothing(bus, 6, 12));
            clients.push_back(AskAndReadNothing(bus, 6, 12));
        }
        std::string status;
        EXPECT_TRUE(Eventually([&] { return (status = StatusBy(proxy)) != "0 on"; })) << round;
        EXPECT_EQ(status, "1001 off") << round;
        EXPECT_EQ(StatusBy(proxy), "0 on") << round;
    }
    EXPECT_LT(bus.service.Peak(), 2 * usual); // Fifty answers have 750 MB.
}

TEST(Program, EndsWhenClientsReadNothing)
{
    for (const int answers : {10, 12}) { // A part of the eleventh is left.
        LimitedBus bus;
        const BusHandle client = AskAndReadNothing(bus, answers, 14);
        EXPECT_TRUE(Eventually([&] { return bus.daemon.Peak() > 135; }, 6000)) << answers;
        std::this_thread::sleep_for(1s);
        const steady_clock::time_point start = steady_clock::now();
        EXPECT_EQ(bus.service.End(SIGTERM), 0) << answers;
        EXPECT_LT(steady_clock::now() - start, 2s) << answers;
        EXPECT_EQ(bus.Find(), nullptr) << answers;
    }
}

TEST_F(Service, EndsWhenItsNameIsTaken)
{
    const std::string errors = bus.folder / "errors";
    EXPECT_EQ(process.End(SIGTERM), 0);
    Process service(Serving(bus) + " 2>" + errors);
    bus.WaitForService();
    const BusHandle another = ConnectionTo(bus);
    sd_bus_message* raw = nullptr;
    ASSERT_GE(sd_bus_message_new_signal(another.get(), &raw, "/", BUS, "NameLost"), 0);
    const BusMessage lie(raw); // Only the bus itself is believed.
    ASSERT_TRUE(sd_bus_message_append(raw, "s", SERVICE_NAME) >= 0 &&
                sd_bus_send_to(another.get(), raw, SERVICE_NAME, nullptr) >= 0 && sd_bus_flush(another.get()) >= 0);
    EXPECT_EQ(StatusBy(bus.Find()), "0 off");
    ASSERT_GE(sd_bus_request_name(another.get(), SERVICE_NAME, SD_BUS_NAME_REPLACE_EXISTING), 0);
    EXPECT_EQ(service.End(), 1);
    EXPECT_EQ(Process("grep -q 'another process has taken the name' " + errors).End(), 0);
}

} // namespace OHOS::Host
