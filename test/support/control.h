// Shared by the test build of the module and the test's own addon, within zelk_test.node.
#ifndef TEST_SUPPORT_CONTROL_H
#define TEST_SUPPORT_CONTROL_H

#include <atomic>
#include <vector>

#include <node_api.h>

namespace ZelkTest {

#define ZELK_TEST_EXPORT __attribute__((visibility("default")))

// The runtime's objects that the module holds, and its Node-API calls since the faults were set.
struct Counts {
    std::atomic<int> records{0};
    std::atomic<int> references{0};
    std::atomic<int> works{0};
    std::atomic<int> deferreds{0};
    std::atomic<int> inFlight{0}; // Async work queued and not completed.
    std::atomic<int> calls{0};    // Node-API calls that can be made to fail.
    std::atomic<int> faults{0};   // Those that were.
};

ZELK_TEST_EXPORT Counts& TheCounts();

// Makes internals of the module callable from JavaScript.
ZELK_TEST_EXPORT void AddProbes(const std::vector<napi_property_descriptor>& probes);

} // namespace ZelkTest

#endif // TEST_SUPPORT_CONTROL_H
