#include "payload/payload.h"

#include <functional>
#include <iomanip>
#include <ios>
#include <map>
#include <sstream>

namespace OHOS::HiviewDFX {
namespace {

using WriterTable = std::map<ValueType, std::function<void(std::ostream&, const Value&)>>;

const WriterTable& Writers()
{
    static const WriterTable writers = {
        {ValueType::INT8, Payload::WriteInt8},
        {ValueType::INT16, WriteValue<int16_t>},
        {ValueType::INT32, WriteValue<int32_t>},
        {ValueType::INT64, WriteValue<int64_t>},
        {ValueType::UINT8, Payload::WriteUint8},
        {ValueType::UINT16, WriteValue<uint16_t>},
        {ValueType::UINT32, WriteValue<uint32_t>},
        {ValueType::UINT64, WriteValue<uint64_t>},
        {ValueType::FLOAT, WriteValue<float>},
        {ValueType::DOUBLE, WriteValue<double>},
        {ValueType::STRING, Payload::WriteString},
        {ValueType::PAYLOAD, WriteValue<Payload>},
        {ValueType::INT8_ARRAY, WriteArray<int8_t>},
        {ValueType::INT16_ARRAY, WriteArray<int16_t>},
        {ValueType::INT32_ARRAY, WriteArray<int32_t>},
        {ValueType::INT64_ARRAY, WriteArray<int64_t>},
        {ValueType::UINT8_ARRAY, WriteArray<uint8_t>},
        {ValueType::UINT16_ARRAY, WriteArray<uint16_t>},
        {ValueType::UINT32_ARRAY, WriteArray<uint32_t>},
        {ValueType::UINT64_ARRAY, WriteArray<uint64_t>},
        {ValueType::FLOAT_ARRAY, WriteArray<float>},
        {ValueType::DOUBLE_ARRAY, WriteArray<double>},
        {ValueType::STRING_ARRAY, Payload::WriteStringArray},
        {ValueType::PAYLOAD_ARRAY, WriteArray<Payload>},
    };
    return writers;
}

// Builds the table when the shared object is loaded, so that no writing thread ever waits for it. A static initialiser
// of another unit that runs earlier still finds it complete, as the table is only reached through Writers().
[[maybe_unused]] const WriterTable& g_writersAtLoad = Writers();

// std::quoted creates a string stream on every call. It is used only for text that has something to escape or a field
// to fill.
void WriteQuoted(std::ostream& stream, const std::string& text)
{
    const bool escapes = std::any_of(text.begin(), text.end(), [](char c) { return c == '"' || c == '\\'; });
    if (escapes || stream.width() != 0) {
        stream << std::quoted(text);
    } else {
        stream << '"' << text << '"';
    }
}

} // namespace

void Payload::WriteInt8(std::ostream& stream, const Value& value)
{
    if (const auto* content = std::any_cast<int8_t>(&value.holder)) {
        stream << static_cast<int32_t>(*content);
    }
}

void Payload::WriteUint8(std::ostream& stream, const Value& value)
{
    if (const auto* content = std::any_cast<uint8_t>(&value.holder)) {
        stream << static_cast<uint32_t>(*content);
    }
}

void Payload::WriteString(std::ostream& stream, const Value& value)
{
    if (const auto* content = std::any_cast<std::string>(&value.holder)) {
        WriteQuoted(stream, *content);
    }
}

void Payload::WriteStringArray(std::ostream& stream, const Value& value)
{
    if (const auto* content = std::any_cast<std::vector<std::string>>(&value.holder)) {
        stream << "[";
        for (const std::string& text : *content) {
            stream << '"' << text << "\",";
        }
        CloseArray(stream, content->empty());
    }
}

std::ostream& CloseArray(std::ostream& stream, bool empty)
{
    if (!empty) {
        stream.seekp(-1, std::ios_base::cur);
    }
    return stream << "]";
}

std::ostream& operator<<(std::ostream& stream, const std::vector<unsigned char>& elements)
{
    stream << "[";
    std::copy(elements.begin(), elements.end(), std::ostream_iterator<uint16_t>(stream, ","));
    return CloseArray(stream, elements.empty());
}

std::ostream& operator<<(std::ostream& stream, const std::vector<signed char>& elements)
{
    stream << "[";
    std::copy(elements.begin(), elements.end(), std::ostream_iterator<int16_t>(stream, ","));
    return CloseArray(stream, elements.empty());
}

std::ostream& operator<<(std::ostream& stream, const Value& value)
{
    const auto writer = value.IsWritable() ? Writers().find(value.type) : Writers().end();
    if (writer == Writers().end()) {
        return stream << "null";
    }
    writer->second(stream, value);
    return stream;
}

std::ostream& operator<<(std::ostream& stream, const Payload& payload)
{
    stream << "{";
    // A string stream in two parts: it is cheaper to construct than std::ostringstream, and text that needs no
    // formatting goes straight into the buffer.
    std::stringbuf buffer(std::ios_base::out);
    std::ostream entries(&buffer);
    for (const auto& [key, value] : payload.entries_) {
        WriteQuoted(entries, key);
        buffer.sputc(':');
        entries << value;
        buffer.sputc(',');
    }
    const std::string text = buffer.str();
    if (!text.empty()) {
        stream << std::string_view(text).substr(0, text.size() - 1);
    }
    return stream << "}";
}

} // namespace OHOS::HiviewDFX
