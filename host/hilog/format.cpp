#include "format.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <string_view>

namespace OHOS::Host {

namespace {

struct Arguments {
    std::va_list list;
    int error; // What %m prints.
};

enum class Type { UNKNOWN, NONE, INT, LONG, LONG_LONG, DOUBLE, LONG_DOUBLE, WIDE_CHARACTER, TEXT, WIDE_TEXT, POINTER };

// Integers of one size are read the same way, whatever their name and sign.
static_assert(sizeof(size_t) == sizeof(long) && sizeof(ptrdiff_t) == sizeof(long));
static_assert(sizeof(intmax_t) == sizeof(long long));

constexpr struct {
    std::string_view length;
    std::string_view kinds;
    Type type;
} ARGUMENT_TYPES[] = {
    {"", "s", Type::TEXT},
    {"", "dioxXubBc", Type::INT},
    {"h", "dioxXubB", Type::INT},
    {"hh", "dioxXubB", Type::INT},
    {"l", "dioxXubB", Type::LONG},
    {"z", "dioxXubB", Type::LONG},
    {"Z", "dioxXubB", Type::LONG},
    {"t", "dioxXubB", Type::LONG},
    {"ll", "dioxXubB", Type::LONG_LONG},
    {"j", "dioxXubB", Type::LONG_LONG},
    {"q", "dioxXubB", Type::LONG_LONG},
    {"L", "dioxXubB", Type::LONG_LONG},
    {"", "aAeEfFgG", Type::DOUBLE},
    {"l", "aAeEfFgG", Type::DOUBLE},
    {"L", "aAeEfFgG", Type::LONG_DOUBLE},
    {"l", "c", Type::WIDE_CHARACTER},
    {"", "C", Type::WIDE_CHARACTER},
    {"l", "s", Type::WIDE_TEXT},
    {"", "S", Type::WIDE_TEXT},
    {"", "pn", Type::POINTER},
    {"", "m", Type::NONE},
};

Type ArgumentType(std::string_view length, char kind)
{
    for (const auto& [rowLength, kinds, type] : ARGUMENT_TYPES) {
        if (rowLength == length && kinds.find(kind) != std::string_view::npos) {
            return type;
        }
    }
    return Type::UNKNOWN;
}

bool Skip(const char*& text, std::string_view prefix)
{
    const bool found = std::strncmp(text, prefix.data(), prefix.size()) == 0;
    text += found ? prefix.size() : 0;
    return found;
}

// Moves `text` past those of the characters that it starts with.
std::string_view Take(const char*& text, const char* characters)
{
    const std::string_view taken(text, std::strspn(text, characters));
    text += taken.size();
    return taken;
}

// A width or a precision as digits, whether the format has them or an argument.
std::string TakeNumber(const char*& text, Arguments& args)
{
    return Skip(text, "*") ? std::to_string(va_arg(args.list, int)) : std::string(Take(text, "0123456789"));
}

// Flags, width and precision.
std::string TakeLayout(const char*& text, Arguments& args)
{
    std::string layout(Take(text, "-+ #0'I"));
    layout += TakeNumber(text, args); // The sign of a negative width is the flag "-".
    if (Skip(text, ".")) {
        const std::string precision = TakeNumber(text, args);
        layout += precision[0] == '-' ? "" : '.' + precision;
    }
    return layout;
}

// False when snprintf refuses the conversion.
template <typename Value>
bool Print(std::string& out, const std::string& format, Value value)
{
    std::array<char, 128> buffer;
    const int size = std::snprintf(buffer.data(), buffer.size(), format.c_str(), value);
    if (size < 0) {
        return false;
    }
    const auto length = static_cast<size_t>(size);
    if (length < buffer.size()) {
        out.append(buffer.data(), length);
        return true;
    }
    const size_t start = out.size();
    out.resize(start + length + 1);
    std::snprintf(&out[start], length + 1, format.c_str(), value);
    out.pop_back();
    return true;
}

template <typename Value>
bool Append(std::string& out, const std::string& format, Value value)
{
    return Print(out, format, value);
}

bool Append(std::string& out, const std::string& format, const char* text)
{
    if (text == nullptr) {
        return Print(out, format.substr(0, format.find_first_of(".lsS")) + "s", "(null)");
    }
    return Print(out, format, text);
}

bool Append(std::string& out, const std::string& format, const wchar_t* text)
{
    return text == nullptr ? Append(out, format, static_cast<const char*>(nullptr)) : Print(out, format, text);
}

// Takes the argument of a conversion and appends what it prints. False when snprintf refuses it.
bool AppendArgument(std::string& out, const std::string& format, Type type, bool isPublic, Arguments& args)
{
    const auto append = [&](auto value) {
        if (!isPublic) {
            out += "<private>";
            return true;
        }
        errno = args.error;
        return Append(out, format, value);
    };
    switch (type) {
    case Type::INT:
        return append(va_arg(args.list, int));
    case Type::LONG:
        return append(va_arg(args.list, long));
    case Type::LONG_LONG:
        return append(va_arg(args.list, long long));
    case Type::DOUBLE:
        return append(va_arg(args.list, double));
    case Type::LONG_DOUBLE:
        return append(va_arg(args.list, long double));
    case Type::WIDE_CHARACTER:
        return append(va_arg(args.list, wint_t));
    case Type::TEXT:
        return append(va_arg(args.list, const char*));
    case Type::WIDE_TEXT:
        return append(va_arg(args.list, const wchar_t*));
    case Type::POINTER:
        return append(va_arg(args.list, const void*));
    case Type::NONE:
        return append(0);
    case Type::UNKNOWN:
        break;
    }
    return false;
}

// The conversions that nearly every line uses, without snprintf, which cannot print a text longer than INT_MAX either.
bool AppendUsual(std::string& out, const char*& text, Arguments& args)
{
    if (Skip(text, "{public}s")) {
        const char* value = va_arg(args.list, const char*);
        out += value == nullptr ? "(null)" : value;
        return true;
    }
    if (Skip(text, "{public}d")) {
        out += std::to_string(va_arg(args.list, int));
        return true;
    }
    return false;
}

// Appends the conversion that starts at `percent`, or what looks like one, and returns where it ends.
const char* AppendFrom(std::string& out, const char* percent, Arguments& args)
{
    const char* text = percent + 1;
    if (AppendUsual(out, text, args)) {
        return text;
    }
    const bool isPublic = Skip(text, "{public}");
    if (!isPublic) {
        Skip(text, "{private}");
    }
    if (Skip(text, "%")) {
        out += '%';
        return text;
    }
    std::string format = '%' + TakeLayout(text, args);
    const std::string_view length = Take(text, "hlLjqtzZ");
    const Type type = ArgumentType(length, *text);
    if (type != Type::UNKNOWN) {
        format.append(length) += *text;
        format.resize(*text == 'n' ? 0 : format.size()); // It would store something.
        ++text;
    }
    if (!AppendArgument(out, format, type, isPublic, args)) {
        out.append(percent, text);
    }
    return text;
}

} // namespace

void AppendFormat(std::string& out, const char* format, std::va_list args)
{
    Arguments arguments{};
    arguments.error = errno;
    va_copy(arguments.list, args);
    while (const char* percent = std::strchr(format, '%')) {
        out.append(format, percent);
        format = AppendFrom(out, percent, arguments);
    }
    out += format;
    va_end(arguments.list);
}

} // namespace OHOS::Host
