#include "config/config_info.h"

namespace OHOS::HiviewDFX {

namespace {

// The value is copied into its place: a parameter of its own would have to be moved there.
template <typename T>
void Append(std::list<ConfigInfoParam>& params, const std::string& name, ConfigInfoParamType type,
            T ConfigInfoParamValue::*member, const T& value)
{
    ConfigInfoParam& added = params.emplace_back(name, type);
    try {
        added.value.*member = value;
    } catch (...) {
        params.pop_back();
        throw;
    }
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
