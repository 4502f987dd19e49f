#include "config/config_info.h"

namespace OHOS::HiviewDFX {

namespace {

// The parameter is complete before it is added, so that running out of memory leaves the item unchanged.
template <typename T>
void Append(std::list<ConfigInfoParam>& params, const std::string& name, ConfigInfoParamType type,
            T ConfigInfoParamValue::*member, const T& value)
{
    std::list<ConfigInfoParam> added;
    added.emplace_back(name, type).value.*member = value;
    params.splice(params.end(), added);
}

} // namespace

ConfigInfo::ConfigInfo(const std::string& itemKey) : key(itemKey) {}

void ConfigInfo::AddParam(const std::string& name, bool value)
{
    Append(params, name, TYPE_BOOL, &ConfigInfoParamValue::boolValue, value);
}

void ConfigInfo::AddParam(const std::string& name, int value)
{
    Append(params, name, TYPE_INT, &ConfigInfoParamValue::intValue, value);
}

void ConfigInfo::AddParam(const std::string& name, const std::string& value)
{
    Append(params, name, TYPE_STRING, &ConfigInfoParamValue::stringValue, value);
}

void ConfigInfo::AddParam(const std::string& name, const std::vector<bool>& value)
{
    Append(params, name, TYPE_BOOL_VECTOR, &ConfigInfoParamValue::boolVector, value);
}

void ConfigInfo::AddParam(const std::string& name, const std::vector<int>& value)
{
    Append(params, name, TYPE_INT_VECTOR, &ConfigInfoParamValue::intVector, value);
}

void ConfigInfo::AddParam(const std::string& name, const std::vector<std::string>& value)
{
    Append(params, name, TYPE_STRING_VECTOR, &ConfigInfoParamValue::stringVector, value);
}

} // namespace OHOS::HiviewDFX
