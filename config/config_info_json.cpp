// The text of a configuration item, as the log service reads it:
//
//   {"configKey":"KEY","value":{"NAME":VALUE,"NAME":VALUE}}
//
// Nothing is escaped. Every value is written with its own comma, and the closing braces replace the last one. This has
// two consequences, which the service knows: an item without parameters loses the brace after "value":, and an empty
// list, which has no comma, runs into the next name or loses its bracket at the end.
//
// The text is built in a string. Constructing a stream takes longer than writing a typical item, and a stream would
// group the digits of integers if the process's locale does.
#include "config/config_info.h"

#include <charconv>
#include <cstdint>
#include <iterator>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "common/module_log.h"

namespace OHOS::HiviewDFX {

namespace {

// Most parameters are shorter than this; more only costs another allocation.
constexpr size_t USUAL_PARAM_SIZE = 32;

// Six digits after the point, without the zeros at the end.
std::string DecimalText(double value)
{
    std::string text = std::to_string(value);
    const size_t last = text.find_last_not_of('0');
    if (last != std::string::npos) {
        text.erase(text[last] == '.' ? last : last + 1);
    }
    return text;
}

template <typename T>
void PutOne(std::string& text, const T& value)
{
    if constexpr (std::is_same_v<T, bool>) {
        text += value ? "true" : "false";
    } else if constexpr (std::is_floating_point_v<T>) {
        text += DecimalText(value);
    } else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, char>) {
        char digits[20]; // Enough for the lowest int64_t.
        text.append(digits, std::to_chars(std::begin(digits), std::end(digits), value).ptr);
    } else {
        text += value;
    }
}

// Appends values, characters and texts.
template <typename... Values>
void Put(std::string& text, const Values&... values)
{
    (PutOne(text, values), ...);
}

// The last element is quoted, unlike those before it, and a boolean is a digit. Only decimals stay as they are.
template <typename T>
void PutLast(std::string& text, const T& value)
{
    if constexpr (std::is_floating_point_v<T>) {
        Put(text, value);
    } else if constexpr (std::is_same_v<T, bool>) {
        Put(text, '"', value ? '1' : '0', '"');
    } else {
        Put(text, '"', value, '"');
    }
}

// [true,false,"1"], [1,2,"3"], [a,b,"c"], [1.5,2]
template <typename T>
void PutList(std::string& text, const std::vector<T>& values)
{
    if (values.empty()) {
        return Put(text, "[]");
    }
    Put(text, '[');
    for (size_t i = 0; i + 1 < values.size(); ++i) {
        Put<T>(text, values[i]);
        Put(text, ',');
    }
    PutLast<T>(text, values.back());
    Put(text, "],");
}

void PutVector(std::string& text, const ConfigInfoParam& param)
{
    switch (param.type) {
    case TYPE_NONE:
        return Put(text, "[],");
    case TYPE_BOOL_VECTOR:
        return PutList(text, param.value.boolVector);
    case TYPE_CHAR_VECTOR:
        return PutList(text, param.value.charVector);
    case TYPE_SHORT_VECTOR:
        return PutList(text, param.value.shortVector);
    case TYPE_INT_VECTOR:
        return PutList(text, param.value.intVector);
    case TYPE_LONG_VECTOR:
        return PutList(text, param.value.longVector);
    case TYPE_FLOAT_VECTOR:
        return PutList(text, param.value.floatVector);
    case TYPE_DOUBLE_VECTOR:
        return PutList(text, param.value.doubleVector);
    case TYPE_STRING_VECTOR:
        return PutList(text, param.value.stringVector);
    default:
        return Put(text, "\"\",");
    }
}

void PutValue(std::string& text, const ConfigInfoParam& param)
{
    switch (param.type) {
    case TYPE_BOOL:
        return Put(text, param.value.boolValue, ',');
    case TYPE_CHAR:
        return Put(text, '"', param.value.charValue, "\",");
    case TYPE_SHORT:
        return Put(text, param.value.shortValue, ',');
    case TYPE_INT:
        return Put(text, param.value.intValue, ',');
    case TYPE_LONG:
        return Put(text, param.value.longValue, ',');
    case TYPE_FLOAT:
        return Put(text, param.value.floatValue, ',');
    case TYPE_DOUBLE:
        return Put(text, param.value.doubleValue, ',');
    case TYPE_STRING:
        return Put(text, '"', param.value.stringValue, "\",");
    default:
        if (param.type > TYPE_NONE) {
            return PutVector(text, param);
        }
        // The copy that AddVectorToJson would take: it writes the line about a type without a value.
        return PutVector(text, ConfigInfoParam(param));
    }
}

template <typename T>
void WriteList(std::stringstream& stream, const std::vector<T>& values)
{
    std::string text;
    PutList(text, values);
    stream << text;
}

} // namespace

std::string ConfigInfo::GetJsonParams() const
{
    std::string text;
    text.reserve(params.size() * USUAL_PARAM_SIZE);
    Put(text, R"({"configKey":")", key, R"(","value":{)");
    for (const ConfigInfoParam& param : params) {
        Put(text, '"', param.name, "\":");
        PutValue(text, param);
    }
    text.back() = '}';
    text += '}';
    // At ERROR level, although nothing is wrong.
    ZELK_ERROR("GetJsonParams ostringstream %{public}s", text.c_str());
    return text;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the copy reports a type without a value.
void ConfigInfo::AddVectorToJson(std::stringstream& stream, ConfigInfoParam param) const
{
    std::string text;
    PutVector(text, param);
    stream << text;
}

void ConfigInfo::ConvertBoolVectorToJson(std::stringstream& stream, const std::vector<bool>& values) const
{
    WriteList(stream, values);
}

template <typename T>
void ConfigInfo::ConvertVectorToJson(std::stringstream& stream, const std::vector<T>& values) const
{
    WriteList(stream, values);
}

template void ConfigInfo::ConvertVectorToJson(std::stringstream&, const std::vector<char>&) const;
template void ConfigInfo::ConvertVectorToJson(std::stringstream&, const std::vector<int16_t>&) const;
template void ConfigInfo::ConvertVectorToJson(std::stringstream&, const std::vector<int32_t>&) const;
template void ConfigInfo::ConvertVectorToJson(std::stringstream&, const std::vector<int64_t>&) const;
template void ConfigInfo::ConvertVectorToJson(std::stringstream&, const std::vector<std::string>&) const;

void ConfigInfo::ConvertFloatVectorToJson(std::stringstream& stream, const std::vector<float>& values) const
{
    WriteList(stream, values);
}

void ConfigInfo::ConvertDecimalsVectorToJson(std::stringstream& stream, const std::vector<double>& values) const
{
    WriteList(stream, values);
}

} // namespace OHOS::HiviewDFX
