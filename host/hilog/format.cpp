// The checked vsnprintf aborts the process when the format skips a numbered argument. Otherwise it checks only the size
// of the buffer, and that there is no %n.
#undef _FORTIFY_SOURCE

#include "format.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace OHOS::Host {

namespace {

const char* AfterMarker(const char* text)
{
    for (const std::string_view marker : {"{public}", "{private}"}) {
        if (std::strncmp(text, marker.data(), marker.size()) == 0) {
            return text + marker.size();
        }
    }
    return text;
}

// Where the flags, argument number, width, precision and length end, in whatever order. What an unusual order means
// is up to the C library, and so is whether a percent sign after it ends this conversion or begins the next.
const char* AfterLayout(const char* text)
{
    constexpr std::string_view LAYOUT = "-+ #'I0123456789*.$hlLjqtzZw";
    while (LAYOUT.find(*text) != std::string_view::npos || (*text == 'f' && text[-1] == 'w')) {
        ++text;
    }
    return text;
}

// Appends `format` to `plain` without its markers. False for what is not supported.
bool RemoveMarkers(std::string& plain, const char* format)
{
    while (const char* percent = std::strchr(format, '%')) {
        plain.append(format, percent + 1);
        format = AfterMarker(percent + 1);
        const char* conversion = AfterLayout(format);
        if (*conversion == 'n' || (*conversion == '%' && conversion != format)) {
            return false;
        }
        if (*format == '%') {
            plain += *format++;
        }
    }
    plain += format;
    return true;
}

} // namespace

bool AppendFormat(std::string& out, const char* format, std::va_list args)
{
    const int error = errno;
    std::string plain;
    plain.reserve(std::strlen(format));
    if (!RemoveMarkers(plain, format)) {
        return false;
    }
    const size_t start = out.size();
    out.resize(out.capacity());
    std::va_list first;
    va_copy(first, args);
    errno = error;
    int size = std::vsnprintf(&out[start], out.size() - start + 1, plain.c_str(), first);
    va_end(first);
    const size_t end = start + static_cast<size_t>(std::max(size, 0));
    if (end > out.size()) {
        out.reserve(end + 1); // With room for the end of the line, so that a long text need not move.
        out.resize(end);
        errno = error;
        size = std::vsnprintf(&out[start], end - start + 1, plain.c_str(), args);
    }
    out.resize(end);
    return size >= 0;
}

} // namespace OHOS::Host
