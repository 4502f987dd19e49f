// The least that an asynchronous call can be on Node-API: a promise, async work, a boolean.
#include "addon.h"

namespace {

struct Call {
    napi_async_work work = nullptr;
    napi_deferred deferred = nullptr;
    bool status = false;
};

void Execute(napi_env, void* data)
{
    static_cast<Call*>(data)->status = true;
}

void Complete(napi_env env, napi_status, void* data)
{
    auto* call = static_cast<Call*>(data);
    napi_value status = nullptr;
    napi_get_boolean(env, call->status, &status);
    napi_resolve_deferred(env, call->deferred, status);
    napi_delete_async_work(env, call->work);
    delete call;
}

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
    Export(env, exports, "getStatus", GetStatus);
    return exports;
}
