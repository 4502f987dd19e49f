// The functions of zelk_testing.node, for testing.js and the command line only. testing.js checks all arguments and
// creates every object and error, so that they belong to the realm that loaded it.
#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <unistd.h>
#include <utility>
#include <vector>

#include "caller.h"
#include "environment.h"
#include "exit_watch.h"
#include "handler_service.h"
#include "js_value.h"
#include "log_captures.h"
#include "napi/util/handle_scope.h"
#include "operation_list.h"
#include "request.h"
#include "service/api/ipc_code.h"
#include "service/api/proxy_source.h"
#include "service_stack.h"

namespace OHOS::Host {

namespace {

// What the addon keeps for each environment.
struct Instance {
    std::shared_ptr<Environment> environment; // From the first service on.
};

// A service and the function that it calls. JavaScript thread.
struct OpenService {
    sptr<HandlerService> service;
    napi_ref function;
};

template <typename T>
napi_value MakeExternal(napi_env env, T value)
{
    napi_value external = nullptr;
    auto owned = std::make_unique<T>(std::move(value));
    const auto destroy = [](napi_env, void* data, void*) {
        delete static_cast<T*>(data);
    };
    if (napi_create_external(env, owned.get(), destroy, nullptr, &external) == napi_ok) {
        static_cast<void>(owned.release());
    }
    return external;
}

template <typename T>
T& External(napi_env env, napi_value external)
{
    void* data = nullptr;
    napi_get_value_external(env, external, &data);
    return *static_cast<T*>(data);
}

double Number(napi_env env, napi_value value)
{
    double number = 0;
    napi_get_value_double(env, value, &number);
    return number;
}

bool Boolean(napi_env env, napi_value value)
{
    bool isTrue = false;
    napi_get_value_bool(env, value, &isTrue);
    return isTrue;
}

std::shared_ptr<Environment> TheEnvironment(napi_env env)
{
    void* data = nullptr;
    napi_get_instance_data(env, &data);
    auto& instance = *static_cast<Instance*>(data);
    if (!instance.environment) {
        instance.environment =
            Environment::Create(env, [](Environment& ended) { ServiceStack::Instance().RemoveAllOf(ended); });
        if (instance.environment) {
            WatchExit(env);
        }
    }
    return instance.environment;
}

// function(id, operation, ...args)
void CallHandler(napi_env env, napi_ref function, uint64_t id, const HandlerService::Request& request)
{
    napi_value callee = nullptr;
    napi_value undefined = nullptr;
    std::vector<napi_value> arguments(2);
    napi_get_reference_value(env, function, &callee);
    napi_get_undefined(env, &undefined);
    napi_create_double(env, static_cast<double>(id), &arguments[0]);
    napi_create_string_utf8(env, request.operation.name, NAPI_AUTO_LENGTH, &arguments[1]);
    for (const Value& value : request.arguments) {
        if (!std::holds_alternative<Nothing>(value)) {
            arguments.push_back(ToJs(env, value));
        }
    }
    napi_call_function(env, undefined, callee, arguments.size(), arguments.data(), nullptr);
}

// open(function, milliseconds): the service; undefined when one of another environment is in force.
napi_value Open(napi_env env, napi_callback_info info)
{
    const auto [function, milliseconds] = ReadArguments<2>(env, info);
    const std::shared_ptr<Environment> environment = TheEnvironment(env);
    if (!environment) {
        napi_throw_error(env, nullptr, "the runtime refuses to make a thread-safe function");
        return nullptr;
    }
    napi_ref reference = nullptr;
    napi_create_reference(env, function, 1, &reference);
    const auto handler = [reference](napi_env home, uint64_t id, const HandlerService::Request& request) {
        CallHandler(home, reference, id, request);
    };
    const std::chrono::duration<double, std::milli> limit(Number(env, milliseconds));
    const sptr<HandlerService> service(new HandlerService(environment, handler, MakeReferenceService(), limit));
    if (!ServiceStack::Instance().Push(service)) {
        napi_delete_reference(env, reference);
        return nullptr;
    }
    return MakeExternal(env, OpenService{service, reference});
}

// close(service): false when another one is in front of it. Not to be called again after true.
napi_value Close(napi_env env, napi_callback_info info)
{
    const auto [external] = ReadArguments<1>(env, info);
    auto& open = External<OpenService>(env, external);
    const bool isClosed = ServiceStack::Instance().Remove(open.service);
    if (isClosed) {
        napi_delete_reference(env, open.function);
    }
    return ToJs(env, isClosed);
}

// setPresent(service, isPresent)
napi_value SetPresent(napi_env env, napi_callback_info info)
{
    const auto [external, isPresent] = ReadArguments<2>(env, info);
    ServiceStack::Instance().SetPresent(External<OpenService>(env, external).service, Boolean(env, isPresent));
    return nullptr;
}

// answer(service, id, code, answer)
napi_value Answer(napi_env env, napi_callback_info info)
{
    const auto [external, id, code, answer] = ReadArguments<4>(env, info);
    HandlerService::Reply reply;
    napi_get_value_int32(env, code, &reply.code);
    reply.answer = FromJs(env, answer);
    External<OpenService>(env, external).service->Answer(static_cast<uint64_t>(Number(env, id)), std::move(reply));
    return nullptr;
}

// passOn(service, id): the reference service answers.
napi_value PassOn(napi_env env, napi_callback_info info)
{
    const auto [external, id] = ReadArguments<2>(env, info);
    External<OpenService>(env, external).service->Answer(static_cast<uint64_t>(Number(env, id)), {0, {}, true});
    return nullptr;
}

using SharedCapture = std::shared_ptr<LogCaptures::Capture>;

// startCapture(): the capture
napi_value StartCapture(napi_env env, napi_callback_info /*info*/)
{
    return MakeExternal(env, LogCaptures::Instance().Start(env));
}

napi_value StopCapture(napi_env env, napi_callback_info info)
{
    const auto [external] = ReadArguments<1>(env, info);
    LogCaptures::Instance().Stop(External<SharedCapture>(env, external));
    return nullptr;
}

// takeLines(capture, function): calls function(level, domain, tag, message, header) for each line since the last time.
napi_value TakeLines(napi_env env, napi_callback_info info)
{
    const auto [external, function] = ReadArguments<2>(env, info);
    napi_value undefined = nullptr;
    napi_get_undefined(env, &undefined);
    for (const LogRecord& line : LogCaptures::Instance().Take(*External<SharedCapture>(env, external))) {
        const HiviewDFX::HandleScope scope(env);
        std::array<napi_value, 5> arguments{};
        napi_create_uint32(env, static_cast<uint32_t>(line.level), &arguments[0]);
        napi_create_uint32(env, line.domain, &arguments[1]);
        arguments[2] = ToJs(env, line.tag);
        arguments[3] = ToJs(env, line.message);
        arguments[4] = ToJs(env, line.header);
        napi_call_function(env, undefined, function, arguments.size(), arguments.data(), nullptr);
    }
    return nullptr;
}

// setCaller(bigint), or setCaller() for the environment's
napi_value SetCallerOfProcess(napi_env env, napi_callback_info info)
{
    const auto [token] = ReadArguments<1>(env, info);
    uint64_t number = 0;
    bool isLossless = false;
    const bool isGiven = napi_get_value_bigint_uint64(env, token, &number, &isLossless) == napi_ok;
    SetCaller(isGiven ? std::optional<uint64_t>(number) : std::nullopt);
    return nullptr;
}

// exit(status): ends the process now. Node.js would wait for its pool, where a worker may wait for the log service.
napi_value Exit(napi_env env, napi_callback_info info)
{
    const auto [status] = ReadArguments<1>(env, info);
    _exit(static_cast<int>(Number(env, status)));
}

napi_value MakeCodes(napi_env env)
{
    napi_value codes = nullptr;
    napi_create_object(env, &codes);
    for (const auto& [name, code] :
         {std::pair("errorAnswer", IPC_ERROR_ANSWER), std::pair("wrongTypes", IPC_WRONG_TYPES)}) {
        napi_value number = nullptr;
        napi_create_int32(env, code, &number);
        napi_set_named_property(env, codes, name, number);
    }
    return codes;
}

void ForgetEnvironment(void* env)
{
    LogCaptures::Instance().StopAllOf(env);
    ForgetCallerOfThisThread();
}

constexpr napi_property_descriptor Function(const char* name, napi_callback method)
{
    return {name, nullptr, method, nullptr, nullptr, nullptr, napi_enumerable, nullptr};
}

constexpr std::array FUNCTIONS = {
    Function("open", Open),
    Function("close", Close),
    Function("setPresent", SetPresent),
    Function("answer", Answer),
    Function("passOn", PassOn),
    Function("startCapture", StartCapture),
    Function("stopCapture", StopCapture),
    Function("takeLines", TakeLines),
    Function("setCaller", SetCallerOfProcess),
    Function("exit", Exit),
    Function("request", Request),
};

} // namespace

} // namespace OHOS::Host

NAPI_MODULE_INIT()
{
    using namespace OHOS::Host;
    const auto destroy = [](napi_env, void* data, void*) {
        delete static_cast<Instance*>(data);
    };
    napi_set_instance_data(env, new Instance, destroy, nullptr);
    napi_add_env_cleanup_hook(env, ForgetEnvironment, env);
    napi_define_properties(env, exports, FUNCTIONS.size(), FUNCTIONS.data());
    napi_set_named_property(env, exports, "operations", MakeOperationList(env));
    napi_set_named_property(env, exports, "codes", MakeCodes(env));
    return exports;
}
