// One named, typed parameter of a configuration item.
#ifndef ZELKLOGSERVICE_CONFIG_CONFIG_INFO_PARAM_H
#define ZELKLOGSERVICE_CONFIG_CONFIG_INFO_PARAM_H

#include <cstdint>
#include <string>
#include <vector>

namespace OHOS::HiviewDFX {

// The numbers are fixed. The underlying type is fixed too, so that a number outside the list is still a valid value:
// such a parameter holds nothing, can be copied, and is written as its own placeholder.
enum ConfigInfoParamType : int32_t {
    TYPE_NONE = 0,
    TYPE_BOOL = 1,
    TYPE_CHAR = 2,
    TYPE_SHORT = 3,
    TYPE_INT = 4,
    TYPE_LONG = 5,
    TYPE_FLOAT = 6,
    TYPE_DOUBLE = 7,
    TYPE_STRING = 8,
    TYPE_BOOL_VECTOR = 9,
    TYPE_CHAR_VECTOR = 10,
    TYPE_SHORT_VECTOR = 11,
    TYPE_INT_VECTOR = 12,
    TYPE_LONG_VECTOR = 13,
    TYPE_FLOAT_VECTOR = 14,
    TYPE_DOUBLE_VECTOR = 15,
    TYPE_STRING_VECTOR = 16,
};

// A tagged union. Only the member that `type` names is alive, from construction to destruction; the tag never changes.
// No member is alive for TYPE_NONE and for a tag outside the list. The value owns its string or vector.
class ConfigInfoParamValue {
public:
    // The member starts at zero, or empty.
    explicit ConfigInfoParamValue(ConfigInfoParamType valueType);

    // Copies the tag and the live member. A tag of 0 or below has none, which is logged as an error; a tag past the
    // last one has none either, which is not logged.
    ConfigInfoParamValue(const ConfigInfoParamValue& other);
    ConfigInfoParamValue& operator=(const ConfigInfoParamValue&) = delete;
    ~ConfigInfoParamValue();

    const ConfigInfoParamType type;
    union {
        bool boolValue;
        char charValue;
        int16_t shortValue;
        int32_t intValue;
        int64_t longValue;
        float floatValue;
        double doubleValue;
        std::string stringValue;
        std::vector<bool> boolVector;
        std::vector<char> charVector;
        std::vector<int16_t> shortVector;
        std::vector<int32_t> intVector;
        std::vector<int64_t> longVector;
        std::vector<float> floatVector;
        std::vector<double> doubleVector;
        std::vector<std::string> stringVector;
    };

private:
    void InitBaseTypeValue(const ConfigInfoParamValue& other);
};

// Copied by its copy constructor (see ConfigInfoParamValue), never assigned.
struct ConfigInfoParam {
    ConfigInfoParam(std::string paramName, ConfigInfoParamType paramType);

    std::string name;
    const ConfigInfoParamType type; // Always value.type.
    ConfigInfoParamValue value;
};

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_CONFIG_CONFIG_INFO_PARAM_H
