#include "host_setting.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <unistd.h>

#include "write_until.h"

namespace OHOS::Host {

namespace {

// Whether a terminal obeys the character instead of showing it.
bool IsControl(uint32_t character)
{
    const auto isIn = [character](uint32_t first, uint32_t last) {
        return character >= first && character <= last;
    };
    const bool turnsWriting =
        character == 0x061C || isIn(0x200E, 0x200F) || isIn(0x202A, 0x202E) || isIn(0x2066, 0x2069);
    return isIn(0, 0x1F) || isIn(0x7F, 0x9F) || turnsWriting;
}

struct Character {
    uint32_t number;
    size_t size; // In bytes.
};

// The first character of a text in UTF-8. A byte that begins no character counts as one.
Character FirstOf(std::string_view text)
{
    const auto lead = static_cast<uint8_t>(text.front());
    const size_t size = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    uint32_t number = size == 1 ? lead : lead & (0x7FU >> size);
    for (size_t i = 1; i < size; ++i) {
        const uint8_t next = i < text.size() ? static_cast<uint8_t>(text[i]) : 0;
        if ((next & 0xC0U) != 0x80) {
            return {lead, 1};
        }
        number = number << 6 | (next & 0x3FU);
    }
    return {number, size};
}

void AppendVisible(std::string& line, std::string_view text)
{
    while (!text.empty()) {
        const auto [number, size] = FirstOf(text);
        if (IsControl(number)) {
            std::array<char, sizeof "\\u0000"> escaped{};
            std::snprintf(escaped.data(), escaped.size(), "\\u%04x", number);
            line += escaped.data();
        } else {
            line += text.substr(0, size);
        }
        text.remove_prefix(size);
    }
}

} // namespace

std::string_view Setting(const char* name)
{
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): see the header.
    return value == nullptr ? std::string_view() : std::string_view(value);
}

bool ReportSetting(const char* name, std::string_view value, const char* consequence)
{
    std::string line = std::string("zelklogservice: ") + name + "=\"";
    AppendVisible(line, value);
    line += std::string("\": ") + consequence + "\n";
    // If standard error cannot be written to, there is nowhere to report that.
    WriteUntil(STDERR_FILENO, line, std::chrono::steady_clock::now() + LONGEST_WAIT_FOR_READER);
    return true;
}

} // namespace OHOS::Host
