#include "config/napi_zelk_config_info_build.h"

#include "common/module_log.h"
#include "napi/util/handle_scope.h"
#include "napi/util/napi_util.h"

namespace OHOS::HiviewDFX {

namespace {

constexpr int32_t INVALID_ARRAY = 7;

// Both lists of arguments are refused with the text that names FillConfigInfoVector.
bool CheckArray(napi_env env, napi_value array)
{
    if (!NapiUtil::IsArray(env, array)) {
        ZELK_ERROR("FillConfigInfoVector: value is not array");
        return false;
    }
    return true;
}

} // namespace

NapiZelkConfigInfoBuild::NapiZelkConfigInfoBuild(const std::shared_ptr<ConfigInfo>& item) : configInfo(item) {}

std::shared_ptr<ConfigInfo> NapiZelkConfigInfoBuild::BuildChangeConfig(napi_env env, napi_value object)
{
    std::vector<std::string> names;
    NapiUtil::GetPropertyNames(env, object, names);
    ChunkedHandleScope scope(env);
    for (const std::string& name : names) {
        scope.Next();
        ZELK_INFO("BuildChangeConfig: key %{public}s", name.c_str());
        napi_value value = NapiUtil::GetProperty(env, object, name);
        if (value != nullptr) {
            AddParamToList(env, name, value);
        }
    }
    return configInfo;
}

void NapiZelkConfigInfoBuild::AddParamToList(napi_env env, const std::string& name, napi_value value)
{
    switch (NapiUtil::GetType(env, value)) {
    case napi_boolean:
        configInfo->AddParam(name, NapiUtil::GetBool(env, value));
        break;
    case napi_number:
        configInfo->AddParam(name, NapiUtil::GetInt32(env, value));
        break;
    case napi_string:
        configInfo->AddParam(name, NapiUtil::GetString(env, value));
        break;
    case napi_object:
        // An object that is not an array is left out silently.
        if (NapiUtil::IsArray(env, value)) {
            AddArrayParamToList(env, name, value);
        }
        break;
    default:
        ZELK_ERROR("AddParamToList: WRONG TYPE");
        break;
    }
}

void NapiZelkConfigInfoBuild::AddArrayParamToList(napi_env env, const std::string& name, napi_value value)
{
    switch (NapiUtil::GetArrayType(env, value)) {
    case napi_null:
        // Empty, or all elements are null: left out silently.
        break;
    case napi_boolean: {
        std::vector<bool> booleans;
        NapiUtil::GetBooleans(env, value, booleans);
        configInfo->AddParam(name, booleans);
        break;
    }
    case napi_number: {
        std::vector<int> numbers;
        NapiUtil::GetInt32s(env, value, numbers);
        configInfo->AddParam(name, numbers);
        break;
    }
    case napi_string: {
        // GetStrings fills a copy: the service always receives an empty list.
        std::vector<std::string> strings;
        NapiUtil::GetStrings(env, value, strings, MAX_STRING_LENGTH);
        configInfo->AddParam(name, strings);
        break;
    }
    default:
        ZELK_ERROR("AddArrayParamToList: array param value type is invalid");
        errorCode = INVALID_ARRAY;
        break;
    }
}

std::shared_ptr<ConfigInfo> BuildConfigInfo(napi_env env, napi_value object)
{
    const std::string key = NapiUtil::GetString(env, NapiUtil::GetProperty(env, object, "configKey"));
    const auto item = std::make_shared<ConfigInfo>(key);
    NapiZelkConfigInfoBuild build(item);
    return build.BuildChangeConfig(env, NapiUtil::GetProperty(env, object, "value"));
}

void FillConfigInfoVector(napi_env env, napi_value array, std::vector<std::shared_ptr<ConfigInfo>>& items)
{
    if (!CheckArray(env, array)) {
        return;
    }
    const uint32_t length = NapiUtil::GetArrayLength(env, array);
    for (uint32_t index = 0; index < length; ++index) {
        const HandleScope scope(env);
        items.push_back(BuildConfigInfo(env, NapiUtil::GetElement(env, array, index)));
    }
}

void FillStringVector(napi_env env, napi_value array, std::vector<std::string>& strings)
{
    if (!CheckArray(env, array)) {
        return;
    }
    const uint32_t length = NapiUtil::GetArrayLength(env, array);
    for (uint32_t index = 0; index < length; ++index) {
        const HandleScope scope(env);
        strings.push_back(NapiUtil::GetString(env, NapiUtil::GetElement(env, array, index)));
    }
}

} // namespace OHOS::HiviewDFX
