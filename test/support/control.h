// Shared by the test build of the module and the test's own addon, within zelk_test.node.
#ifndef TEST_SUPPORT_CONTROL_H
#define TEST_SUPPORT_CONTROL_H

#include <string>

#include <node_api.h>

namespace ZelkTest {

#define ZELK_TEST_EXPORT __attribute__((visibility("default")))

// Counts what the module holds, and the faults since they were planned.
ZELK_TEST_EXPORT void Count(const char* what, int change);

// What JavaScript can call of the module beside its functions.
struct Probes {
    void (*run)(napi_env env, const std::string& name);
    napi_value (*keep)(napi_env env, napi_value value);
};
ZELK_TEST_EXPORT void SetProbes(const Probes& probes);

} // namespace ZelkTest

#endif // TEST_SUPPORT_CONTROL_H
