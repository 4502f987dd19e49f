// Shared by the test build of the module and the test's own addon, within zelk_test.node: the plan of Node-API calls
// that are to fail, and what is known of the calls, as JSON.
#ifndef TEST_SUPPORT_CONTROL_H
#define TEST_SUPPORT_CONTROL_H

#include <json/value.h>
#include <node_api.h>

namespace ZelkTest {

#define ZELK_TEST_EXPORT __attribute__((visibility("default")))

// Counts what the module holds, and the faults since they were planned.
ZELK_TEST_EXPORT void Count(const char* what, int change);

// What JavaScript can call of the module beside its functions. Set when the module is loaded.
ZELK_TEST_EXPORT extern napi_callback g_probe;

// `plan`: [{"name": the Node-API function, or none for any, "nth": which use of it}, ..]. With "wordless" its error has
// no message. With "dataless" it succeeds and gives nothing; async work is created, but its steps get no data.
Json::Value PlanFaults(const Json::Value& plan);

// The module's Node-API calls since the plan was made, unless it is empty: [["name", status, "calling function"], ..].
Json::Value ReadTrace(const Json::Value&);

// {"contexts", "references", "works", "deferreds"}: what the module holds; "inFlight": async work queued and not
// completed; "faults": calls that were made to fail since the plan was made; "members", "returned": see probes.cpp.
Json::Value ReadCounts(const Json::Value&);

} // namespace ZelkTest

#endif // TEST_SUPPORT_CONTROL_H
