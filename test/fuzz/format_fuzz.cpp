// HiLog's formats. One conversion with an argument of its type must come out as printf prints it, or as <private>; any
// other text as a format must be survived.
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <fuzzer/FuzzedDataProvider.h>

#include "format.h"

namespace {

void Require(bool holds)
{
    if (!holds) {
        std::abort();
    }
}

std::string Format(const char* format, ...)
{
    std::pmr::string out;
    std::va_list args;
    va_start(args, format);
    OHOS::Host::AppendFormat(out, format, args);
    va_end(args);
    return std::string(out);
}

// "Printed", with `value` behind the width and the precision that the format may take from arguments.
template <typename Print, typename Value>
auto Call(Print print, const std::string& format, int stars, const int* numbers, Value value)
{
    switch (stars) {
    case 0:
        return print(format.c_str(), value);
    case 1:
        return print(format.c_str(), numbers[0], value);
    default:
        return print(format.c_str(), numbers[0], numbers[1], value);
    }
}

struct Conversion {
    std::string marker;
    std::string rest; // As printf takes it, after the percent sign.
    int stars = 0;
    int numbers[2] = {};
};

template <typename Value>
void Compare(const Conversion& conversion, Value value)
{
    const auto format = [](const char* text, auto... args) {
        return Format(text, args...);
    };
    const auto print = [](const char* text, auto... args) {
        std::string out(static_cast<size_t>(std::snprintf(nullptr, 0, text, args...)), '\0');
        std::snprintf(out.data(), out.size() + 1, text, args...);
        return out;
    };
    errno = EINTR;
    const std::string seen =
        Call(format, "<%" + conversion.marker + conversion.rest + ">", conversion.stars, conversion.numbers, value);
    errno = EINTR;
    const std::string expected = conversion.marker == "{public}" ? Call(print, "<%" + conversion.rest + ">",
                                                                        conversion.stars, conversion.numbers, value)
                                                                 : "<<private>>";
    Require(seen == expected);
}

// A width or a precision, in the format or as an argument.
std::string Number(FuzzedDataProvider& data, Conversion& conversion)
{
    const int number = data.ConsumeIntegralInRange(-40, 200);
    if (data.ConsumeBool()) {
        conversion.numbers[conversion.stars++] = number;
        return "*";
    }
    return std::to_string(std::abs(number));
}

void TryConversion(FuzzedDataProvider& data)
{
    Conversion conversion;
    conversion.marker = data.PickValueInArray({"", "{public}", "{public}", "{public}", "{private}"});
    for (int flags = data.ConsumeIntegralInRange(0, 4); flags > 0; --flags) {
        conversion.rest += data.PickValueInArray({'-', '+', ' ', '#', '0'});
    }
    conversion.rest += data.ConsumeBool() ? Number(data, conversion) : "";
    if (data.ConsumeBool()) {
        conversion.rest += "." + (data.ConsumeBool() ? Number(data, conversion) : "");
    }
    const auto finish = [&conversion](const char* end) {
        conversion.rest += end;
        return conversion;
    };
    const std::string text = data.ConsumeRandomLengthString(300);
    const std::wstring wide(text.size() % 20, L'w');
    switch (data.ConsumeIntegralInRange(0, 11)) {
    case 0:
        return Compare(finish(data.PickValueInArray({"d", "i", "u", "x", "X", "o", "c", "hd", "hhu", "hhi", "hx"})),
                       data.ConsumeIntegral<int>());
    case 1:
        return Compare(finish(data.PickValueInArray({"ld", "lu", "lx", "lo"})), data.ConsumeIntegral<long>());
    case 2:
        return Compare(finish(data.PickValueInArray({"lld", "llu", "llX"})), data.ConsumeIntegral<long long>());
    case 3:
        return Compare(finish(data.PickValueInArray({"zu", "zd", "zx"})), data.ConsumeIntegral<size_t>());
    case 4:
        return Compare(finish(data.PickValueInArray({"jd", "ju", "jo"})), data.ConsumeIntegral<intmax_t>());
    case 5:
        return Compare(finish(data.PickValueInArray({"td", "ti"})), data.ConsumeIntegral<ptrdiff_t>());
    case 6:
        return Compare(finish(data.PickValueInArray({"f", "F", "e", "E", "g", "G", "a", "A", "lf"})),
                       data.ConsumeFloatingPoint<double>());
    case 7:
        return Compare(finish(data.PickValueInArray({"Lf", "Lg", "La"})),
                       static_cast<long double>(data.ConsumeFloatingPoint<double>()));
    case 8:
        return Compare(finish("s"), text.c_str());
    case 9:
        return Compare(finish("ls"), wide.c_str());
    case 10:
        return Compare(finish("lc"), static_cast<wint_t>(data.ConsumeIntegralInRange(1, 126)));
    default:
        return Compare(finish("p"), static_cast<const void*>(text.c_str()));
    }
}

// Whether a format asks for nothing huge and gets along with the arguments below.
bool IsModest(const std::string& format)
{
    size_t digits = 0;
    size_t percents = 0;
    for (const char character : format) {
        digits = character >= '0' && character <= '9' ? digits + 1 : 0;
        percents += character == '%' ? 1 : 0;
        if (digits > 4 || percents > 16 || character == '*' || character == 'L') {
            return false;
        }
    }
    return true;
}

void TryText(const std::string& format)
{
    if (!IsModest(format)) {
        return;
    }
    // Good as a string of either width, and as a number.
    static const wchar_t anything[] = L"w";
    const auto* a = anything;
    const std::string seen = Format(format.c_str(), a, a, a, a, a, a, a, a, a, a, a, a, a, a, a, a, a, a, a, a, 1.5,
                                    2.5, 3.5, 4.5, 5.5, 6.5, 7.5, 8.5, a, a, a, a, a, a, a, a, a, a, a, a);
    const std::string whole = format.c_str();
    const size_t percent = whole.find('%');
    Require(seen.compare(0, percent, whole, 0, percent) == 0);
    Require(percent != std::string::npos || seen == whole);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    FuzzedDataProvider data(bytes, size);
    if (data.ConsumeBool()) {
        TryConversion(data);
    } else {
        TryText(data.ConsumeRemainingBytesAsString());
    }
    return 0;
}
