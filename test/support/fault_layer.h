// A layer between the module and Node-API: it sees each of the module's own calls, with the function that makes it, and
// makes the planned ones fail without reaching the runtime. The test build of the module includes this first in every
// source.
#ifndef TEST_SUPPORT_FAULT_LAYER_H
#define TEST_SUPPORT_FAULT_LAYER_H

#include <node_api.h>
#include <type_traits>

#include "test/support/control.h"

namespace ZelkTest {

struct CallSite {
    const char* function;
    const char* call;
};

// Whether this call is planned not to reach the runtime, and the status that it then has.
ZELK_TEST_EXPORT bool TakeFault(const CallSite& site);
ZELK_TEST_EXPORT napi_status FaultStatus();

// Notes that a call ended with `status`, which it returns, and what the module holds now.
ZELK_TEST_EXPORT napi_status Ended(const CallSite& site, napi_status status);

// The function alone says what its parameters are.
template <typename... Parameters>
napi_status Call(const CallSite& site, napi_status (*real)(Parameters...),
                 std::enable_if_t<true, Parameters>... arguments)
{
    return Ended(site, TakeFault(site) ? FaultStatus() : real(arguments...));
}

// Runs the module's steps through its own data, so that async work in flight can be counted and a step can be run
// without data.
ZELK_TEST_EXPORT napi_status Call(const CallSite& site, decltype(&napi_create_async_work) real, napi_env env,
                                  napi_value resource, napi_value resourceName, napi_async_execute_callback execute,
                                  napi_async_complete_callback complete, void* data, napi_async_work* result);

// Returns the error record of a planned fault until the next call.
ZELK_TEST_EXPORT napi_status Call(const CallSite& site, decltype(&napi_get_last_error_info) real, napi_env env,
                                  const napi_extended_error_info** result);

} // namespace ZelkTest

#include "node_api_calls.h" // Made by CMakeLists.txt.

#endif // TEST_SUPPORT_FAULT_LAYER_H
