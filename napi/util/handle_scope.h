// A handle scope of Node-API.
#ifndef ZELKLOGSERVICE_NAPI_UTIL_HANDLE_SCOPE_H
#define ZELKLOGSERVICE_NAPI_UTIL_HANDLE_SCOPE_H

#include "napi/native_api.h"

namespace OHOS::HiviewDFX {

// Releases the handles that were made since its construction, so that a loop over a long list does not pile them up
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

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_UTIL_HANDLE_SCOPE_H
