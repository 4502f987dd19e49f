#include "ipc_skeleton.h"

#include <atomic>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>
#include <unistd.h>

#include "calling_token.h"
#include "host/utils/host_setting.h"

namespace OHOS {

namespace {

constexpr const char* TOKEN_VARIABLE = "OHOS_FULL_TOKEN_ID";
constexpr uint64_t SYSTEM_APP_TOKEN = 0x100000001;

// What SetCallingToken was given. A query between the two stores sees the identity before or after the change.
std::atomic<uint64_t> g_givenToken{0};
std::atomic<bool> g_isGiven{false};

// Decimal digits, or 0x and hexadecimal digits, and nothing else.
std::optional<uint64_t> ParseTokenId(std::string_view text)
{
    const bool hexadecimal = text.substr(0, 2) == "0x";
    if (hexadecimal) {
        text.remove_prefix(2);
    }
    uint64_t token = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, token, hexadecimal ? 16 : 10);
    if (error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return token;
}

uint64_t TokenOfEnvironment()
{
    const std::string_view text = Host::Setting(TOKEN_VARIABLE);
    if (text.empty()) {
        return SYSTEM_APP_TOKEN;
    }
    const std::optional<uint64_t> token = ParseTokenId(text);
    if (!token) {
        static const bool reported = Host::ReportSetting(TOKEN_VARIABLE, text, "not a 64-bit token id; no rights");
        static_cast<void>(reported);
    }
    return token.value_or(0);
}

// The environment's value when it was last read: at the load of the library, or later on the first thread.
std::atomic<uint64_t> g_token{TokenOfEnvironment()};

bool IsFirstThread()
{
    thread_local const bool isFirst = gettid() == getpid();
    return isFirst;
}

} // namespace

void Host::SetCallingToken(std::optional<uint64_t> token)
{
    if (token) {
        g_givenToken = *token;
    }
    g_isGiven = token.has_value();
}

uint64_t IPCSkeleton::GetCallingFullTokenID()
{
    if (g_isGiven) {
        return g_givenToken;
    }
    if (IsFirstThread()) {
        g_token = TokenOfEnvironment();
    }
    return g_token;
}

} // namespace OHOS
