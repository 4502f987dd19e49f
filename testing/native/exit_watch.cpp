#include "exit_watch.h"

#include <array>
#include <string>
#include <unistd.h>
#include <vector>

#include "service_stack.h"

namespace OHOS::Host {

namespace {

// The real `process`, not the one that a test runner may give its tests, and the `emit` that it had.
struct Watched {
    napi_ref process;
    napi_ref emit;
};

napi_value Get(napi_env env, napi_ref reference)
{
    napi_value value = nullptr;
    napi_get_reference_value(env, reference, &value);
    return value;
}

// A program may emit `exit` itself, to try its own listeners.
bool IsExiting(napi_env env, napi_value process)
{
    napi_value exiting = nullptr;
    bool isExiting = true; // For a runtime that does not say.
    napi_get_named_property(env, process, "_exiting", &exiting);
    napi_get_value_bool(env, exiting, &isExiting);
    return isExiting;
}

bool IsExitEvent(napi_env env, napi_value event)
{
    std::array<char, sizeof("exit.")> name{};
    size_t length = 0;
    return napi_get_value_string_utf8(env, event, name.data(), name.size(), &length) == napi_ok &&
           std::string(name.data(), length) == "exit";
}

// emit(event, ...args) of any object: a test runner may have copied it from `process`.
napi_value Emit(napi_env env, napi_callback_info info)
{
    napi_value self = nullptr;
    void* data = nullptr;
    size_t count = 0;
    napi_get_cb_info(env, info, &count, nullptr, &self, &data);
    std::vector<napi_value> arguments(count);
    napi_get_cb_info(env, info, &count, arguments.data(), nullptr, nullptr);

    const auto& watched = *static_cast<const Watched*>(data);
    bool isProcess = false;
    napi_strict_equals(env, self, Get(env, watched.process), &isProcess);
    if (isProcess && count > 0 && IsExitEvent(env, arguments[0]) && IsExiting(env, self)) {
        ServiceStack::Instance().EndAll();
    }
    napi_value result = nullptr;
    napi_call_function(env, self, Get(env, watched.emit), count, arguments.data(), &result);
    return result;
}

// Listeners can be removed, or be skipped because an earlier one throws, so the event itself is watched.
void WatchEmit(napi_env env, napi_value process)
{
    napi_value emit = nullptr;
    napi_valuetype type = napi_undefined;
    napi_get_named_property(env, process, "emit", &emit);
    napi_typeof(env, emit, &type);
    if (type != napi_function) {
        return;
    }
    auto* const watched = new Watched{}; // Never deleted: `emit` may be called until the process ends.
    napi_create_reference(env, process, 1, &watched->process);
    napi_create_reference(env, emit, 1, &watched->emit);
    const auto attributes = static_cast<napi_property_attributes>(napi_writable | napi_configurable);
    const napi_property_descriptor property{"emit", nullptr, Emit, nullptr, nullptr, nullptr, attributes, watched};
    napi_define_properties(env, process, 1, &property);
}

napi_value OnExit(napi_env env, napi_callback_info info)
{
    napi_value process = nullptr;
    napi_get_cb_info(env, info, nullptr, nullptr, &process, nullptr);
    if (IsExiting(env, process)) {
        ServiceStack::Instance().EndAll();
    }
    return nullptr;
}

// For a program that has put an earlier `emit` back.
void Listen(napi_env env, napi_value process)
{
    napi_value on = nullptr;
    std::array<napi_value, 2> arguments{};
    napi_get_named_property(env, process, "on", &on);
    napi_create_string_utf8(env, "exit", NAPI_AUTO_LENGTH, &arguments[0]);
    napi_create_function(env, "endServices", NAPI_AUTO_LENGTH, OnExit, nullptr, &arguments[1]);
    napi_call_function(env, process, on, arguments.size(), arguments.data(), nullptr);
}

} // namespace

void WatchExit(napi_env env)
{
    if (gettid() != getpid() || !ServiceStack::Instance().ClaimExit()) {
        return;
    }
    napi_value global = nullptr;
    napi_value process = nullptr;
    napi_get_global(env, &global);
    napi_get_named_property(env, global, "process", &process);
    WatchEmit(env, process);
    Listen(env, process);
}

} // namespace OHOS::Host
