// A log service that answers the status query after 100 ms, and any number of them at the same time. Takes the address
// of the bus; prints a line when it can be called.
#include <chrono>
#include <cstdio>
#include <deque>

#include <systemd/sd-bus.h>

namespace {

using std::chrono::steady_clock;

constexpr std::chrono::milliseconds DELAY(100);

struct Waiting {
    steady_clock::time_point until;
    sd_bus_message* call;
};

int Keep(sd_bus_message* call, void* data, sd_bus_error*)
{
    static_cast<std::deque<Waiting>*>(data)->push_back({steady_clock::now() + DELAY, sd_bus_message_ref(call)});
    return 1;
}

const sd_bus_vtable METHODS[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("GetModemLogStatus", "", "ib", Keep, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

void AnswerDue(std::deque<Waiting>& calls)
{
    while (!calls.empty() && calls.front().until <= steady_clock::now()) {
        sd_bus_reply_method_return(calls.front().call, "ib", 0, 1);
        sd_bus_message_unref(calls.front().call);
        calls.pop_front();
    }
}

// Microseconds until the next answer is due.
uint64_t TimeLeft(const std::deque<Waiting>& calls)
{
    if (calls.empty()) {
        return UINT64_MAX;
    }
    const auto left = calls.front().until - steady_clock::now();
    return left.count() < 0 ? 0 : static_cast<uint64_t>(left / std::chrono::microseconds(1));
}

} // namespace

int main(int argc, char** argv)
{
    std::deque<Waiting> calls;
    sd_bus* bus = nullptr;
    if (argc != 2 || sd_bus_new(&bus) < 0 || sd_bus_set_address(bus, argv[1]) < 0 ||
        sd_bus_set_bus_client(bus, 1) < 0 || sd_bus_start(bus) < 0 ||
        sd_bus_add_object_vtable(bus, nullptr, "/dev/zelk/LogService", "dev.zelk.LogService1", METHODS, &calls) < 0 ||
        sd_bus_request_name(bus, "dev.zelk.LogService", 0) < 0) {
        std::fprintf(stderr, "slow_bus_service: cannot serve on the bus\n");
        return 1;
    }
    std::puts("ready");
    std::fflush(stdout);
    for (;;) {
        AnswerDue(calls);
        const int processed = sd_bus_process(bus, nullptr);
        if (processed < 0) {
            return 0; // The bus is gone, and so is the benchmark.
        }
        if (processed == 0) {
            sd_bus_wait(bus, TimeLeft(calls));
        }
    }
}
