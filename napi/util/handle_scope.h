// Handle scopes of Node-API.
#ifndef ZELKLOGSERVICE_NAPI_UTIL_HANDLE_SCOPE_H
#define ZELKLOGSERVICE_NAPI_UTIL_HANDLE_SCOPE_H

#include <cstdint>
#include <optional>

#include "napi/native_api.h"

namespace OHOS::HiviewDFX {

// Releases the handles that were made since its construction, so that they do not pile up in a loop over a long list
// until the call returns. A scope that cannot be opened leaves them to the scope around it. JavaScript thread only.
class HandleScope {
public:
    explicit HandleScope(napi_env env) : env_(env)
    {
        napi_open_handle_scope(env, &scope_);
    }
    ~HandleScope()
    {
        if (scope_ != nullptr) {
            napi_close_handle_scope(env_, scope_);
        }
    }
    HandleScope(const HandleScope&) = delete;
    HandleScope& operator=(const HandleScope&) = delete;

private:
    napi_env env_;
    napi_handle_scope scope_ = nullptr;
};

// Scopes for a loop whose steps make few handles each: one for each chunk of steps, as one for every step would cost
// more than the step. The first chunk leaves its handles to the scope around the loop, so that a short loop costs
// nothing. JavaScript thread only.
class ChunkedHandleScope {
public:
    explicit ChunkedHandleScope(napi_env env) : env_(env) {}

    // Begins a step. Handles of earlier steps must no longer be used.
    void Next()
    {
        if (++steps_ > CHUNK) {
            steps_ = 1;
            scope_.reset();
            scope_.emplace(env_);
        }
    }

private:
    static constexpr uint32_t CHUNK = 256;

    napi_env env_;
    uint32_t steps_ = 0;
    std::optional<HandleScope> scope_;
};

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_UTIL_HANDLE_SCOPE_H
