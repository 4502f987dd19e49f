#include "napi/util/arguments.h"

#include "common/module_log.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

bool MatchParameters(napi_env env, const napi_value argv[], std::initializer_list<napi_valuetype> types)
{
    if (types.size() == 0) {
        ZELK_INFO("current paramCount is zero, so return true");
        return true;
    }
    for (const napi_valuetype type : types) {
        if (!NapiUtil::MatchValueType(env, *argv++, type)) {
            ZELK_ERROR("MatchParameters: current type does not match given type");
            return false;
        }
    }
    return true;
}

bool ReadObjectArguments(napi_env env, napi_callback_info info, const char* illegalParams, Arguments<2>& arguments)
{
    if (!ReadArguments(env, info, arguments)) {
        return false;
    }
    // The second list asks for the same first type again. It decides only if that type could not be read the first
    // time; otherwise it just logs the mismatch once more.
    const napi_value* argv = arguments.values.data();
    if (!MatchParameters(env, argv, {napi_object}) && !MatchParameters(env, argv, {napi_object, napi_function})) {
        ZELK_ERROR("%{public}s", illegalParams);
        return false;
    }
    return true;
}

bool ReadType(napi_env env, napi_value value, napi_valuetype& type)
{
    return CheckCall(env, napi_typeof(env, value, &type));
}

bool KeepCallback(napi_env env, napi_value value, BaseContext& context)
{
    return CheckCall(env, napi_create_reference(env, value, 1, &context.callbackRef));
}

bool KeepCallbackIfFunction(napi_env env, napi_value value, BaseContext& context)
{
    napi_valuetype type = napi_undefined;
    if (!ReadType(env, value, type)) {
        return false;
    }
    return type != napi_function || KeepCallback(env, value, context);
}

} // namespace OHOS::HiviewDFX
