// The status query over sd-bus as the least that an asynchronous call of it can be on Node-API.
#include <systemd/sd-bus.h>

#include "addon.h"

namespace {

sd_bus* g_bus = nullptr;

// open(address)
napi_value Open(napi_env env, napi_callback_info info)
{
    napi_value arguments[1] = {};
    ReadArguments(env, info, arguments);
    char address[256] = "";
    size_t length = 0;
    napi_get_value_string_utf8(env, arguments[0], address, sizeof(address), &length);
    const bool opened = sd_bus_new(&g_bus) >= 0 && sd_bus_set_address(g_bus, address) >= 0 &&
                        sd_bus_set_bus_client(g_bus, 1) >= 0 && sd_bus_start(g_bus) >= 0;
    napi_value result = nullptr;
    napi_get_boolean(env, opened, &result);
    return result;
}

bool Ask(int& status)
{
    sd_bus_message* reply = nullptr;
    int32_t code = -1;
    const bool answered = sd_bus_call_method(g_bus, "dev.zelk.LogService", "/dev/zelk/LogService",
                                             "dev.zelk.LogService1", "GetModemLogStatus", nullptr, &reply, "") >= 0 &&
                          sd_bus_message_read(reply, "ib", &code, &status) >= 0;
    sd_bus_message_unref(reply);
    return answered;
}

struct Call {
    napi_async_work work = nullptr;
    napi_deferred deferred = nullptr;
    bool answered = false;
    int status = 0;
};

void Execute(napi_env, void* data)
{
    auto* call = static_cast<Call*>(data);
    call->answered = Ask(call->status);
}

void Complete(napi_env env, napi_status, void* data)
{
    auto* call = static_cast<Call*>(data);
    napi_value status = nullptr;
    napi_get_boolean(env, call->status != 0, &status);
    (call->answered ? napi_resolve_deferred : napi_reject_deferred)(env, call->deferred, status);
    napi_delete_async_work(env, call->work);
    delete call;
}

// getStatus(): a promise, rejected where nobody answers; one at a time
napi_value GetStatus(napi_env env, napi_callback_info)
{
    auto* call = new Call;
    napi_value promise = nullptr;
    napi_value name = nullptr;
    napi_create_promise(env, &call->deferred, &promise);
    napi_create_string_utf8(env, "GetStatus", NAPI_AUTO_LENGTH, &name);
    napi_create_async_work(env, nullptr, name, Execute, Complete, call, &call->work);
    napi_queue_async_work(env, call->work);
    return promise;
}

} // namespace

BENCH_EXPORT napi_value napi_register_module_v1(napi_env env, napi_value exports)
{
    Export(env, exports, "open", Open);
    Export(env, exports, "getStatus", GetStatus);
    return exports;
}
