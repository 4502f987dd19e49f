#include "napi/calls/config_change_call.h"

#include "common/module_log.h"
#include "config/napi_zelk_config_info_build.h"
#include "napi/util/arguments.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

std::unique_ptr<ChangeConfigContext> ReadConfigChangeCall(napi_env env, napi_callback_info info,
                                                          const ConfigChangeTexts& texts)
{
    Arguments<2> arguments;
    if (!ReadObjectArguments(env, info, texts.illegalParams, arguments)) {
        return nullptr;
    }
    auto context = std::make_unique<ChangeConfigContext>();
    napi_valuetype type = napi_undefined;
    if (!ReadType(env, arguments[0], type)) {
        return nullptr;
    }
    if (type != napi_object) {
        ZELK_ERROR("%{public}s", texts.errorObjectType);
        return nullptr;
    }
    if (!NapiUtil::IsArray(env, arguments[0])) {
        ZELK_ERROR("%{public}s", texts.errorArrayType);
        return nullptr;
    }
    FillConfigInfoVector(env, arguments[0], context->configs);
    if (arguments.count == 2 && !KeepCallbackIfFunction(env, arguments[1], *context)) {
        return nullptr;
    }
    return context;
}

} // namespace OHOS::HiviewDFX
