#include "format.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <string_view>
#include <type_traits>
#include <utility>

namespace OHOS::Host {

namespace {

constexpr int OMITTED = -1;
constexpr int FROM_ARGUMENT = -2;

enum class Length { NONE, CHAR, SHORT, LONG, LONG_LONG, LONG_DOUBLE, MAX, SIZE, DIFFERENCE };

struct Conversion {
    std::string_view source; // The conversion as it stands in the format.
    bool isPublic = false;
    std::string flags; // Each at most once.
    int width = OMITTED;
    int precision = OMITTED;
    Length length = Length::NONE;
    char kind = '\0'; // '\0' for what is no conversion.
};

struct Arguments {
    std::va_list list;
    int error; // What %m prints.
};

bool Skip(const char*& text, std::string_view prefix)
{
    const bool found = std::strncmp(text, prefix.data(), prefix.size()) == 0;
    text += found ? prefix.size() : 0;
    return found;
}

// A width or a precision: a star or digits; without digits `number` stays. False for a number that is no int.
bool ParseNumber(const char*& text, int& number)
{
    if (Skip(text, "*")) {
        number = FROM_ARGUMENT;
        return true;
    }
    const char* end = text + std::strspn(text, "0123456789");
    const bool fits = std::from_chars(text, end, number).ec != std::errc::result_out_of_range;
    text = end;
    return fits;
}

Length ParseLength(const char*& text)
{
    // A longer name stands before the shorter one that it begins with.
    static constexpr std::array<std::pair<std::string_view, Length>, 8> LENGTHS{{
        {"hh", Length::CHAR},
        {"h", Length::SHORT},
        {"ll", Length::LONG_LONG},
        {"l", Length::LONG},
        {"L", Length::LONG_DOUBLE},
        {"j", Length::MAX},
        {"z", Length::SIZE},
        {"t", Length::DIFFERENCE},
    }};
    for (const auto& [name, length] : LENGTHS) {
        if (Skip(text, name)) {
            return length;
        }
    }
    return Length::NONE;
}

// Whether a kind goes with a length.
bool IsKnown(char kind, Length length)
{
    switch (kind) {
    case 'd':
    case 'i':
    case 'o':
    case 'u':
    case 'x':
    case 'X':
    case 'n':
        return true;
    case 'a':
    case 'A':
    case 'e':
    case 'E':
    case 'f':
    case 'F':
    case 'g':
    case 'G':
        return length == Length::NONE || length == Length::LONG || length == Length::LONG_DOUBLE;
    case 'c':
    case 's':
        return length == Length::NONE || length == Length::LONG;
    case 'C':
    case 'S':
    case 'p':
    case 'm':
        return length == Length::NONE;
    default:
        return false;
    }
}

// Reads flags to kind. False where the text is no conversion; `text` is then at the first character that does not fit.
bool ParsePrintf(const char*& text, Conversion& conversion)
{
    for (; *text != '\0' && std::strchr("-+ #0'", *text) != nullptr; ++text) {
        if (conversion.flags.find(*text) == std::string::npos) {
            conversion.flags += *text;
        }
    }
    if (!ParseNumber(text, conversion.width)) {
        return false;
    }
    if (Skip(text, ".")) {
        conversion.precision = 0;
        if (!ParseNumber(text, conversion.precision)) {
            return false;
        }
    }
    conversion.length = ParseLength(text);
    if (!IsKnown(*text, conversion.length)) {
        return false;
    }
    conversion.kind = *text++;
    if (conversion.kind == 'C' || conversion.kind == 'S') {
        conversion.kind = conversion.kind == 'C' ? 'c' : 's';
        conversion.length = Length::LONG;
    }
    return true;
}

Conversion Parse(const char* percent)
{
    Conversion conversion;
    const char* text = percent + 1;
    conversion.isPublic = Skip(text, "{public}");
    if (!conversion.isPublic) {
        Skip(text, "{private}");
    }
    if (Skip(text, "%")) {
        conversion.kind = '%';
    } else if (!ParsePrintf(text, conversion)) {
        conversion.kind = '\0';
    }
    conversion.source = std::string_view(percent, static_cast<size_t>(text - percent));
    return conversion;
}

// Takes the widths and precisions that are arguments.
void Resolve(Conversion& conversion, Arguments& args)
{
    if (conversion.width == FROM_ARGUMENT) {
        conversion.width = va_arg(args.list, int);
        if (conversion.width < 0) {
            conversion.flags += '-';
            conversion.width = conversion.width == INT_MIN ? INT_MAX : -conversion.width;
        }
    }
    if (conversion.precision == FROM_ARGUMENT) {
        conversion.precision = va_arg(args.list, int);
    }
}

intmax_t TakeSigned(Length length, Arguments& args)
{
    switch (length) {
    case Length::CHAR:
        return static_cast<signed char>(va_arg(args.list, int));
    case Length::SHORT:
        return static_cast<short>(va_arg(args.list, int));
    case Length::LONG:
        return va_arg(args.list, long);
    case Length::LONG_LONG:
    case Length::LONG_DOUBLE:
        return va_arg(args.list, long long);
    case Length::MAX: // NOLINT(bugprone-branch-clone): one type here, but not everywhere.
        return va_arg(args.list, intmax_t);
    case Length::SIZE:
        return va_arg(args.list, std::make_signed_t<size_t>);
    case Length::DIFFERENCE:
        return va_arg(args.list, ptrdiff_t);
    case Length::NONE:
        break;
    }
    return va_arg(args.list, int);
}

uintmax_t TakeUnsigned(Length length, Arguments& args)
{
    switch (length) {
    case Length::CHAR:
        return static_cast<unsigned char>(va_arg(args.list, unsigned int));
    case Length::SHORT:
        return static_cast<unsigned short>(va_arg(args.list, unsigned int));
    case Length::LONG:
        return va_arg(args.list, unsigned long);
    case Length::LONG_LONG:
    case Length::LONG_DOUBLE:
        return va_arg(args.list, unsigned long long);
    case Length::MAX: // NOLINT(bugprone-branch-clone): one type here, but not everywhere.
        return va_arg(args.list, uintmax_t);
    case Length::SIZE:
        return va_arg(args.list, size_t);
    case Length::DIFFERENCE:
        return va_arg(args.list, std::make_unsigned_t<ptrdiff_t>);
    case Length::NONE:
        break;
    }
    return va_arg(args.list, unsigned int);
}

// Lets printf print `value`, whose type `length` names.
template <typename Value>
void AppendPrintf(std::pmr::string& out, const Conversion& conversion, const char* length, Value value)
{
    const std::string format = "%" + conversion.flags + "*.*" + length + conversion.kind;
    const int width = conversion.width == OMITTED ? 0 : conversion.width;
    std::array<char, 128> buffer;
    const int size = std::snprintf(buffer.data(), buffer.size(), format.c_str(), width, conversion.precision, value);
    if (size < 0) {
        out += conversion.source;
    } else if (static_cast<size_t>(size) < buffer.size()) {
        out.append(buffer.data(), static_cast<size_t>(size));
    } else {
        const size_t start = out.size();
        const size_t room = static_cast<size_t>(size) + 1;
        out.resize(start + room);
        std::snprintf(&out[start], room, format.c_str(), width, conversion.precision, value);
        out.pop_back();
    }
}

// Strings are not left to printf, which knows none beyond INT_MAX.
void AppendString(std::pmr::string& out, const Conversion& conversion, const char* text)
{
    const bool whole = text == nullptr || conversion.precision < 0;
    text = text == nullptr ? "(null)" : text;
    const size_t size = whole ? std::strlen(text) : strnlen(text, static_cast<size_t>(conversion.precision));
    const size_t width = conversion.width == OMITTED ? 0 : static_cast<size_t>(conversion.width);
    const size_t padding = width > size ? width - size : 0;
    const bool toTheLeft = conversion.flags.find('-') != std::string::npos;
    out.append(toTheLeft ? 0 : padding, ' ').append(text, size).append(toTheLeft ? padding : 0, ' ');
}

void Append(std::pmr::string& out, const Conversion& conversion, const char* text)
{
    AppendString(out, conversion, text);
}

void Append(std::pmr::string& out, const Conversion& conversion, const wchar_t* text)
{
    if (text == nullptr) {
        AppendString(out, conversion, nullptr);
    } else {
        AppendPrintf(out, conversion, "l", text);
    }
}

void Append(std::pmr::string& out, const Conversion& conversion, intmax_t number)
{
    if (conversion.flags.empty() && conversion.width == OMITTED && conversion.precision < 0) {
        std::array<char, 24> digits;
        char* end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        out.append(digits.data(), end);
    } else {
        AppendPrintf(out, conversion, "j", number);
    }
}

void Append(std::pmr::string& out, const Conversion& conversion, uintmax_t number)
{
    AppendPrintf(out, conversion, "j", number);
}

void Append(std::pmr::string& out, const Conversion& conversion, long double number)
{
    AppendPrintf(out, conversion, "L", number);
}

void Append(std::pmr::string& out, const Conversion& conversion, wint_t character)
{
    AppendPrintf(out, conversion, "l", character);
}

// A double, an int (a character) or a pointer.
template <typename Value>
void Append(std::pmr::string& out, const Conversion& conversion, Value value)
{
    AppendPrintf(out, conversion, "", value);
}

template <typename Value>
void AppendByPrivacy(std::pmr::string& out, const Conversion& conversion, Value value)
{
    if (conversion.isPublic) {
        Append(out, conversion, value);
    } else {
        out += "<private>";
    }
}

void AppendError(std::pmr::string& out, const Conversion& conversion, int error)
{
    const std::string format = "%" + conversion.flags + "m";
    std::array<char, 256> text{};
    errno = error;
    std::snprintf(text.data(), text.size(), format.c_str(), 0);
    AppendByPrivacy<const char*>(out, conversion, text.data());
}

// Takes the arguments of one conversion and appends what it prints.
void AppendConversion(std::pmr::string& out, Conversion& conversion, Arguments& args)
{
    Resolve(conversion, args);
    const bool isLong = conversion.length == Length::LONG;
    switch (conversion.kind) {
    case 'd':
    case 'i':
        return AppendByPrivacy(out, conversion, TakeSigned(conversion.length, args));
    case 'o':
    case 'u':
    case 'x':
    case 'X':
        return AppendByPrivacy(out, conversion, TakeUnsigned(conversion.length, args));
    case 'c':
        return isLong ? AppendByPrivacy(out, conversion, va_arg(args.list, wint_t))
                      : AppendByPrivacy(out, conversion, va_arg(args.list, int));
    case 's':
        return isLong ? AppendByPrivacy(out, conversion, va_arg(args.list, const wchar_t*))
                      : AppendByPrivacy(out, conversion, va_arg(args.list, const char*));
    case 'p':
        return AppendByPrivacy(out, conversion, va_arg(args.list, const void*));
    case 'n':
        static_cast<void>(va_arg(args.list, void*));
        out += conversion.isPublic ? "" : "<private>";
        return;
    case 'm':
        return AppendError(out, conversion, args.error);
    case '%':
        out += '%';
        return;
    default:
        return conversion.length == Length::LONG_DOUBLE
                   ? AppendByPrivacy(out, conversion, va_arg(args.list, long double))
                   : AppendByPrivacy(out, conversion, va_arg(args.list, double));
    }
}

} // namespace

void AppendFormat(std::pmr::string& out, const char* format, std::va_list args)
{
    Arguments arguments{};
    arguments.error = errno;
    va_copy(arguments.list, args);
    while (const char* percent = std::strchr(format, '%')) {
        out.append(format, percent);
        Conversion conversion = Parse(percent);
        if (conversion.kind == '\0') {
            out += conversion.source;
        } else {
            AppendConversion(out, conversion, arguments);
        }
        format = percent + conversion.source.size();
    }
    out += format;
    va_end(arguments.list);
}

} // namespace OHOS::Host
