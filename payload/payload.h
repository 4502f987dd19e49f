#ifndef ZELKLOGSERVICE_PAYLOAD_PAYLOAD_H
#define ZELKLOGSERVICE_PAYLOAD_PAYLOAD_H

#include <algorithm>
#include <any>
#include <cstdint>
#include <iterator>
#include <ostream>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

// Writes named, typed values to a stream as compact JSON-like text.
//
//     std::ostringstream text;
//     text << Payload()
//                 .Add("name", "modem")
//                 .Add("size", int64_t{4096})
//                 .Add("levels", std::vector<uint8_t>{1, 200})
//                 .Add("last", Payload().Add("ok", int8_t{1}).Add("load", 0.5))
//                 .Add("none", Value());
//     // {"name":"modem","size":4096,"levels":[1,200],"last":{"ok":1,"load":0.5},"none":null}
//
// Formatting: a Payload writes its entries with the formatting of a new string stream, regardless of the flags and the
// precision of the stream it is written to. A Value or a vector written on its own follows its stream. A field width
// applies to the first thing written.
//
// Streams: a vector is closed by moving the put position back over the last comma, so it needs a stream that can seek,
// such as a string stream; on any other failbit is set and the "]" is missing. A Payload, with its vectors, can be
// written to any stream.
//
// Threads: every operation only reads what it is given; any number of threads may write at the same time.
//
// Errors: none are reported. What cannot be written is "null" or nothing at all, see Value.
namespace OHOS::HiviewDFX {

class Payload;

enum class ValueType : int32_t {
    NONE = -1,
    INT8,
    INT16,
    INT32,
    INT64,
    UINT8,
    UINT16,
    UINT32,
    UINT64,
    FLOAT,
    DOUBLE,
    STRING,
    PAYLOAD,
    INT8_ARRAY,
    INT16_ARRAY,
    INT32_ARRAY,
    INT64_ARRAY,
    UINT8_ARRAY,
    UINT16_ARRAY,
    UINT32_ARRAY,
    UINT64_ARRAY,
    FLOAT_ARRAY,
    DOUBLE_ARRAY,
    STRING_ARRAY,
    PAYLOAD_ARRAY,
};

// The kind of a C++ type. A type that is not listed here has no kind.
template <typename T>
inline constexpr ValueType KIND_OF = ValueType::NONE;
template <>
inline constexpr ValueType KIND_OF<int8_t> = ValueType::INT8;
template <>
inline constexpr ValueType KIND_OF<int16_t> = ValueType::INT16;
template <>
inline constexpr ValueType KIND_OF<int32_t> = ValueType::INT32;
template <>
inline constexpr ValueType KIND_OF<int64_t> = ValueType::INT64;
template <>
inline constexpr ValueType KIND_OF<uint8_t> = ValueType::UINT8;
template <>
inline constexpr ValueType KIND_OF<uint16_t> = ValueType::UINT16;
template <>
inline constexpr ValueType KIND_OF<uint32_t> = ValueType::UINT32;
template <>
inline constexpr ValueType KIND_OF<uint64_t> = ValueType::UINT64;
template <>
inline constexpr ValueType KIND_OF<float> = ValueType::FLOAT;
template <>
inline constexpr ValueType KIND_OF<double> = ValueType::DOUBLE;
template <>
inline constexpr ValueType KIND_OF<std::string> = ValueType::STRING;
template <>
inline constexpr ValueType KIND_OF<Payload> = ValueType::PAYLOAD;

// The array kinds are in the order of the kinds of their elements.
template <typename T>
inline constexpr ValueType KIND_OF<std::vector<T>> =
    KIND_OF<T> >= ValueType::INT8&& KIND_OF<T> <= ValueType::PAYLOAD
        ? static_cast<ValueType>(static_cast<int32_t>(KIND_OF<T>) + static_cast<int32_t>(ValueType::INT8_ARRAY))
        : ValueType::NONE;

// One value with its kind. The kind follows from the C++ type; a type without a kind does not compile.
struct Value {
    // Written as "null".
    Value() = default;

    template <typename T, typename = std::enable_if_t<KIND_OF<std::decay_t<T>> != ValueType::NONE>>
    explicit Value(T&& content) : type(KIND_OF<std::decay_t<T>>), holder(std::forward<T>(content))
    {
    }

    explicit Value(std::string_view text) : Value(std::string(text)) {}

    // Takes both as they are. Content whose type does not match the kind is not written at all, so that an entry is
    // only its key and a colon; a number that is not a kind is written as "null".
    Value(ValueType kind, std::any content) : type(kind), holder(std::move(content)) {}

    bool IsWritable() const
    {
        return type != ValueType::NONE && holder.has_value();
    }

    ValueType type = ValueType::NONE;
    std::any holder;
};

// Named values in the order in which they were added. A key may occur more than once. Owns copies of all its values.
class Payload {
public:
    // content: a Value, or anything that a Value can be made from.
    template <typename T>
    Payload& Add(std::string key, T&& content)
    {
        entries_.emplace_back(std::move(key), Value(std::forward<T>(content)));
        return *this;
    }

    // Writers of the kinds that differ from the plain output of their type: 8 bits are numbers, a string is quoted with
    // escapes, the strings of an array are quoted without. Each writes nothing if the value holds another type.
    static void WriteInt8(std::ostream& stream, const Value& value);
    static void WriteUint8(std::ostream& stream, const Value& value);
    static void WriteString(std::ostream& stream, const Value& value);
    static void WriteStringArray(std::ostream& stream, const Value& value);

private:
    friend std::ostream& operator<<(std::ostream& stream, const Payload& payload);

    std::vector<std::pair<std::string, Value>> entries_;
};

std::ostream& operator<<(std::ostream& stream, const Payload& payload);
std::ostream& operator<<(std::ostream& stream, const Value& value);

// Ends an array whose elements are each followed by a comma: "]" takes the place of the last one.
std::ostream& CloseArray(std::ostream& stream, bool empty);

// Outside this namespace the three below need `using OHOS::HiviewDFX::operator<<`, because argument-dependent lookup
// does not find them for a vector of numbers.
template <typename T, typename = std::enable_if_t<KIND_OF<std::vector<T>> != ValueType::NONE &&
                                                  KIND_OF<std::vector<T>> != ValueType::STRING_ARRAY>>
std::ostream& operator<<(std::ostream& stream, const std::vector<T>& elements)
{
    stream << "[";
    std::copy(elements.begin(), elements.end(), std::ostream_iterator<T>(stream, ","));
    return CloseArray(stream, elements.empty());
}
std::ostream& operator<<(std::ostream& stream, const std::vector<unsigned char>& elements);
std::ostream& operator<<(std::ostream& stream, const std::vector<signed char>& elements);

// Writes a T as its stream formats it, or nothing if the value holds another type.
template <typename T>
void WriteValue(std::ostream& stream, const Value& value)
{
    if (const T* content = std::any_cast<T>(&value.holder)) {
        stream << *content;
    }
}

// Writes a vector of T, or nothing if the value holds another type.
template <typename T>
void WriteArray(std::ostream& stream, const Value& value)
{
    WriteValue<std::vector<T>>(stream, value);
}

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_PAYLOAD_PAYLOAD_H
