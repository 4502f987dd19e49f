// The text of a configuration item, as the log service reads it:
//
//   {"configKey":"KEY","value":{"NAME":VALUE,"NAME":VALUE}}
//
// Nothing is escaped. Every value brings its own comma, the last of which gives way to the closing braces. Two things
// follow that the service knows: an item without parameters loses the brace behind "value":, and an empty list, which
// brings no comma, runs into the next name or loses its bracket at the end.
#include "config/config_info.h"

#include <charconv>
#include <iterator>
#include <string_view>
#include <type_traits>

#include "common/module_log.h"

namespace OHOS::HiviewDFX {

namespace {

// Most parameters are shorter than this; more only costs a second allocation.
constexpr size_t USUAL_PARAM_SIZE = 32;
// The stream is emptied into the result after so many parameters. In a stream that grew to the whole text every byte
// would be moved several times, and the time per parameter would rise with the length of the item.
constexpr size_t PARAMS_PER_PIECE = 256;

void MoveText(std::stringstream& stream, std::string& text)
{
    text += stream.str();
    stream.str({});
}

// Appends characters, integers and texts. They go straight to the stream's buffer: the formatting layer above it costs
// more than the text itself, and would group an integer's digits where the process's locale does.
template <typename... Parts>
void Put(std::stringstream& stream, const Parts&... parts)
{
    const auto putOne = [&buffer = *stream.rdbuf()](const auto& part) {
        using Part = std::decay_t<decltype(part)>;
        if constexpr (std::is_same_v<Part, char>) {
            buffer.sputc(part);
        } else if constexpr (std::is_integral_v<Part>) {
            char digits[20]; // Enough for the lowest int64_t.
            buffer.sputn(digits, std::to_chars(std::begin(digits), std::end(digits), part).ptr - digits);
        } else {
            const std::string_view text = part;
            buffer.sputn(text.data(), static_cast<std::streamsize>(text.size()));
        }
    };
    (putOne(parts), ...);
}

// Six digits behind the point, without the zeros at the end.
std::string DecimalText(double value)
{
    std::string text = std::to_string(value);
    const size_t last = text.find_last_not_of('0');
    if (last != std::string::npos) {
        text.erase(text[last] == '.' ? last : last + 1);
    }
    return text;
}

// What all lists have in common; they differ in how an element and the last one are written.
template <typename T, typename PutElement, typename PutLast>
void PutList(std::stringstream& stream, const std::vector<T>& values, PutElement putElement, PutLast putLast)
{
    if (values.empty()) {
        return Put(stream, "[]");
    }
    Put(stream, '[');
    for (size_t i = 0; i + 1 < values.size(); ++i) {
        putElement(values[i]);
        Put(stream, ',');
    }
    putLast(values.back());
    Put(stream, "],");
}

template <typename T>
void PutDecimalList(std::stringstream& stream, const std::vector<T>& values)
{
    const auto put = [&](T value) {
        Put(stream, DecimalText(value));
    };
    PutList(stream, values, put, put);
}

} // namespace

std::string ConfigInfo::GetJsonParams() const
{
    std::string text;
    text.reserve(params.size() * USUAL_PARAM_SIZE);
    std::stringstream stream;
    size_t unmoved = 0;
    Put(stream, R"({"configKey":")", key, R"(","value":{)");
    for (const ConfigInfoParam& param : params) {
        Put(stream, '"', param.name, "\":");
        switch (param.type) {
        case TYPE_BOOL:
            Put(stream, param.value.boolValue ? "true," : "false,");
            break;
        case TYPE_CHAR:
            Put(stream, '"', param.value.charValue, "\",");
            break;
        case TYPE_SHORT:
            Put(stream, param.value.shortValue, ',');
            break;
        case TYPE_INT:
            Put(stream, param.value.intValue, ',');
            break;
        case TYPE_LONG:
            Put(stream, param.value.longValue, ',');
            break;
        case TYPE_FLOAT:
            Put(stream, DecimalText(param.value.floatValue), ',');
            break;
        case TYPE_DOUBLE:
            Put(stream, DecimalText(param.value.doubleValue), ',');
            break;
        case TYPE_STRING:
            Put(stream, '"', param.value.stringValue, "\",");
            break;
        default:
            AddVectorToJson(stream, param);
            break;
        }
        if (++unmoved == PARAMS_PER_PIECE) {
            MoveText(stream, text);
            unmoved = 0;
        }
    }
    MoveText(stream, text);
    text.back() = '}';
    text += '}';
    ZELK_ERROR("GetJsonParams ostringstream %{public}s", text.c_str());
    return text;
}

// The copy is part of it: for a type without a value, copying writes the line that reports it.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void ConfigInfo::AddVectorToJson(std::stringstream& stream, ConfigInfoParam param) const
{
    switch (param.type) {
    case TYPE_NONE:
        return Put(stream, "[],");
    case TYPE_BOOL_VECTOR:
        return ConvertBoolVectorToJson(stream, param.value.boolVector);
    case TYPE_CHAR_VECTOR:
        return ConvertVectorToJson(stream, param.value.charVector);
    case TYPE_SHORT_VECTOR:
        return ConvertVectorToJson(stream, param.value.shortVector);
    case TYPE_INT_VECTOR:
        return ConvertVectorToJson(stream, param.value.intVector);
    case TYPE_LONG_VECTOR:
        return ConvertVectorToJson(stream, param.value.longVector);
    case TYPE_FLOAT_VECTOR:
        return ConvertFloatVectorToJson(stream, param.value.floatVector);
    case TYPE_DOUBLE_VECTOR:
        return ConvertDecimalsVectorToJson(stream, param.value.doubleVector);
    case TYPE_STRING_VECTOR:
        return ConvertVectorToJson(stream, param.value.stringVector);
    default:
        return Put(stream, "\"\",");
    }
}

// [true,false,"1"]
void ConfigInfo::ConvertBoolVectorToJson(std::stringstream& stream, const std::vector<bool>& values) const
{
    PutList(
        stream, values, [&](bool value) { Put(stream, value ? "true" : "false"); },
        [&](bool value) { Put(stream, '"', value ? '1' : '0', '"'); });
}

// [1,2,"3"] and [a,b,"c"]
template <typename T>
void ConfigInfo::ConvertVectorToJson(std::stringstream& stream, const std::vector<T>& values) const
{
    PutList(
        stream, values, [&](const T& value) { Put(stream, value); },
        [&](const T& value) { Put(stream, '"', value, '"'); });
}

template void ConfigInfo::ConvertVectorToJson(std::stringstream&, const std::vector<char>&) const;
template void ConfigInfo::ConvertVectorToJson(std::stringstream&, const std::vector<int16_t>&) const;
template void ConfigInfo::ConvertVectorToJson(std::stringstream&, const std::vector<int32_t>&) const;
template void ConfigInfo::ConvertVectorToJson(std::stringstream&, const std::vector<int64_t>&) const;
template void ConfigInfo::ConvertVectorToJson(std::stringstream&, const std::vector<std::string>&) const;

// [1.5,2]
void ConfigInfo::ConvertFloatVectorToJson(std::stringstream& stream, const std::vector<float>& values) const
{
    PutDecimalList(stream, values);
}

void ConfigInfo::ConvertDecimalsVectorToJson(std::stringstream& stream, const std::vector<double>& values) const
{
    PutDecimalList(stream, values);
}

} // namespace OHOS::HiviewDFX
