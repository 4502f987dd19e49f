#include "napi/calls/config_query_call.h"

#include "common/module_log.h"
#include "config/napi_zelk_config_info_build.h"
#include "napi/util/arguments.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

std::unique_ptr<GetConfigContext> ReadConfigQueryCall(napi_env env, napi_callback_info info,
                                                      const ConfigQueryTexts& texts)
{
    Arguments<2> arguments;
    if (!ReadObjectArguments(env, info, texts.illegalParams, arguments)) {
        return nullptr;
    }
    auto context = std::make_unique<GetConfigContext>();
    napi_valuetype type = napi_undefined;
    if (!ReadType(env, arguments[0], type)) {
        return nullptr;
    }
    if (type != napi_object || !NapiUtil::IsArray(env, arguments[0])) {
        ZELK_ERROR("%{public}s", texts.errorType);
        return nullptr;
    }
    FillStringVector(env, arguments[0], context->configKeys);
    if (arguments.count == 2) {
        if (!KeepCallbackIfFunction(env, arguments[1], *context)) {
            return nullptr;
        }
    } else if (arguments.count == 1) {
        ZELK_INFO("%{public}s", texts.onlyOneParam);
    } else {
        ZELK_ERROR("%{public}s", texts.illegalCount);
        return nullptr;
    }
    return context;
}

} // namespace OHOS::HiviewDFX
