// The same call as in bare_call.cpp, written the way of node-addon-api.
#include <napi.h>

namespace {

class Worker : public Napi::AsyncWorker {
public:
    explicit Worker(Napi::Env env) : AsyncWorker(env, "GetStatus"), deferred_(Napi::Promise::Deferred::New(env)) {}

    void Execute() override
    {
        status_ = true;
    }
    void OnOK() override
    {
        deferred_.Resolve(Napi::Boolean::New(Env(), status_));
    }
    Napi::Promise Promise() const
    {
        return deferred_.Promise();
    }

private:
    Napi::Promise::Deferred deferred_;
    bool status_ = false;
};

Napi::Value GetStatus(const Napi::CallbackInfo& info)
{
    auto* worker = new Worker(info.Env());
    const Napi::Promise promise = worker->Promise();
    worker->Queue();
    return promise;
}

Napi::Object Init(Napi::Env env, Napi::Object exports)
{
    exports.Set("getStatus", Napi::Function::New(env, GetStatus));
    return exports;
}

} // namespace

NODE_API_MODULE(async_worker_call, Init)
