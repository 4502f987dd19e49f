#include "napi/calls/switch_call.h"

#include "common/module_log.h"
#include "config/napi_zelk_config_info_build.h"
#include "napi/util/arguments.h"
#include "napi/util/checked_call.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

namespace {

bool ReadState(napi_env env, napi_value state, const SwitchTexts& texts, SwitchContext& context)
{
    napi_valuetype type = napi_undefined;
    if (!CheckCall(env, napi_typeof(env, state, &type))) {
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
    if (!ReadState(env, arguments[0], texts, *context)) {
        return nullptr;
    }
    switch (arguments.count) {
    case 2:
        if (NapiUtil::IsArray(env, arguments[1])) {
            FillConfigInfoVector(env, arguments[1], context->configs);
        } else if (NapiUtil::IsUndefined(env, arguments[1])) {
            ZELK_INFO("%{public}s", texts.configUndefined);
        } else if (!KeepCallback(env, arguments[1], *context)) {
            return nullptr;
        }
        break;
    case 3:
        // The callback comes before the items, not after them.
        if (!KeepCallback(env, arguments[1], *context)) {
            return nullptr;
        }
        if (NapiUtil::IsArray(env, arguments[2])) {
            FillConfigInfoVector(env, arguments[2], context->configs);
        }
        break;
    default:
        break;
    }
    return context;
}

} // namespace OHOS::HiviewDFX
