// The check of leading arguments against a list of types.
#ifndef ZELKLOGSERVICE_NAPI_UTIL_MATCH_PARAMETERS_H
#define ZELKLOGSERVICE_NAPI_UTIL_MATCH_PARAMETERS_H

#include <initializer_list>

#include "common/module_log.h"
#include "napi/native_api.h"
#include "napi/util/arguments.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

// Whether argv[i] is of the i-th type for every type of the list. The first mismatch is logged; an argument that is
// missing is one, and throws. `argv` has a slot for every type.
inline bool MatchParameters(napi_env env, const napi_value argv[], std::initializer_list<napi_valuetype> types)
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

// Reads (object) or (object, any). False when the first argument is no object, which is logged with `illegalParams`, or
// when a Node-API call fails, a missing first argument included, which is thrown.
inline bool ReadObjectArguments(napi_env env, napi_callback_info info, const char* illegalParams,
                                Arguments<2>& arguments)
{
    if (!ReadArguments(env, info, arguments)) {
        return false;
    }
    // The second list decides nothing that the first has not, but says its line once more.
    const napi_value* argv = arguments.values.data();
    if (!MatchParameters(env, argv, {napi_object}) && !MatchParameters(env, argv, {napi_object, napi_function})) {
        ZELK_ERROR("%{public}s", illegalParams);
        return false;
    }
    return true;
}

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_UTIL_MATCH_PARAMETERS_H
