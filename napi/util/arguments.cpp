#include "napi/util/arguments.h"

namespace OHOS::HiviewDFX {

bool KeepCallback(napi_env env, napi_value value, BaseContext& context)
{
    return IsOk(env, napi_create_reference(env, value, 1, &context.callbackRef));
}

bool KeepCallbackIfFunction(napi_env env, napi_value value, BaseContext& context)
{
    napi_valuetype type = napi_undefined;
    if (!IsOk(env, napi_typeof(env, value, &type))) {
        return false;
    }
    return type != napi_function || KeepCallback(env, value, context);
}

} // namespace OHOS::HiviewDFX
