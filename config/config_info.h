// A configuration item: the unit in which settings are sent to the log service.
#ifndef ZELKLOGSERVICE_CONFIG_CONFIG_INFO_H
#define ZELKLOGSERVICE_CONFIG_CONFIG_INFO_H

#include <list>
#include <sstream>
#include <string>
#include <vector>

#include "config/config_info_param.h"

namespace OHOS::HiviewDFX {

// A key that names the setting, and its parameters in the order in which they were added. An item is filled on one
// thread, handed over, and from then on only read; there is no lock. Nothing here fails except with std::bad_alloc,
// which leaves the item unchanged.
class ConfigInfo {
public:
    explicit ConfigInfo(const std::string& itemKey);

    // Appends a parameter. A name may be added more than once; all of them are kept and sent.
    // A string literal would become a bool: pass a std::string.
    void AddParam(const std::string& name, bool value);
    void AddParam(const std::string& name, int value);
    void AddParam(const std::string& name, const std::string& value);
    void AddParam(const std::string& name, const std::vector<bool>& value);
    void AddParam(const std::string& name, const std::vector<int>& value);
    void AddParam(const std::string& name, const std::vector<std::string>& value);

    // The text that the log service receives for this item, the same on every call; it is also logged. It looks
    // like JSON but is not: nothing is escaped, and lists are written as config_info_json.cpp shows.
    std::string GetJsonParams() const;

    // The writers of list values, which append to `stream`. Every list except an empty one ends in a comma.
    // A type that is not a list is written by its placeholder: `[],` for TYPE_NONE, `"",` for any other.
    void AddVectorToJson(std::stringstream& stream, ConfigInfoParam param) const;
    void ConvertBoolVectorToJson(std::stringstream& stream, const std::vector<bool>& values) const;
    // For char, int16_t, int32_t, int64_t and std::string.
    template <typename T>
    void ConvertVectorToJson(std::stringstream& stream, const std::vector<T>& values) const;
    void ConvertFloatVectorToJson(std::stringstream& stream, const std::vector<float>& values) const;
    void ConvertDecimalsVectorToJson(std::stringstream& stream, const std::vector<double>& values) const;

    std::string key;
    std::list<ConfigInfoParam> params;
};

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_CONFIG_CONFIG_INFO_H
