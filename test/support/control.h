// Shared by the test build of the module and the test's own addon, within zelk_test.node.
#ifndef TEST_SUPPORT_CONTROL_H
#define TEST_SUPPORT_CONTROL_H

#include <vector>

#include <node_api.h>

namespace ZelkTest {

#define ZELK_TEST_EXPORT __attribute__((visibility("default")))

// Counts what the module holds, and the faults since they were planned.
ZELK_TEST_EXPORT void Count(const char* what, int change);

// Makes internals of the module callable from JavaScript.
ZELK_TEST_EXPORT void AddProbes(const std::vector<napi_property_descriptor>& probes);

} // namespace ZelkTest

#endif // TEST_SUPPORT_CONTROL_H
