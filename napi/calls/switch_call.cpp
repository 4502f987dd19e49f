#include "napi/calls/switch_call.h"

#include "common/module_log.h"
#include "config/napi_zelk_config_info_build.h"
#include "napi/util/arguments.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

namespace {

bool ReadState(napi_env env, napi_value state, const SwitchTexts& texts, SwitchContext& context)
{
    napi_valuetype type = napi_undefined;
    if (!ReadType(env, state, type)) {
        return false;
    }
    if (type == napi_boolean) {
        context.switchStatus = NapiUtil::GetBool(env, state);
        if (texts.logSwitchStatus != nullptr) {
            texts.logSwitchStatus(context.switchStatus);
        }
    }
    return true;
}

// Reads the second argument of (state, configs) or (state, callback).
bool ReadConfigsOrCallback(napi_env env, napi_value second, const SwitchTexts& texts, SwitchContext& context)
{
    if (NapiUtil::IsArray(env, second)) {
        FillConfigInfoVector(env, second, context.configs);
        return true;
    }
    if (NapiUtil::IsUndefined(env, second)) {
        ZELK_INFO("%{public}s", texts.configUndefined);
        return true;
    }
    return KeepCallback(env, second, context);
}

// Reads the last two arguments of (state, callback, configs): the callback comes before the items, not after them.
bool ReadCallbackAndConfigs(napi_env env, napi_value callback, napi_value configs, SwitchContext& context)
{
    if (!KeepCallback(env, callback, context)) {
        return false;
    }
    if (NapiUtil::IsArray(env, configs)) {
        FillConfigInfoVector(env, configs, context.configs);
    }
    return true;
}

bool ReadAfterState(napi_env env, const Arguments<3>& arguments, const SwitchTexts& texts, SwitchContext& context)
{
    switch (arguments.count) {
    case 2:
        return ReadConfigsOrCallback(env, arguments[1], texts, context);
    case 3:
        return ReadCallbackAndConfigs(env, arguments[1], arguments[2], context);
    default:
        return true;
    }
}

} // namespace

std::unique_ptr<SwitchContext> ReadSwitchCall(napi_env env, napi_callback_info info, const SwitchTexts& texts)
{
    Arguments<3> arguments;
    if (!ReadArguments(env, info, arguments)) {
        return nullptr;
    }
    auto context = std::make_unique<SwitchContext>();
    if (arguments.count > 3) {
        ZELK_ERROR("%{public}s", texts.illegalCount);
        return nullptr;
    }
    if (!ReadState(env, arguments[0], texts, *context) || !ReadAfterState(env, arguments, texts, *context)) {
        return nullptr;
    }
    return context;
}

} // namespace OHOS::HiviewDFX
