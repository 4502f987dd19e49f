#include <cstdint>

#include "tokenid_kit.h"

namespace OHOS::Security::AccessToken {

namespace {

constexpr uint64_t SYSTEM_APP_BIT = uint64_t{1} << 32;

} // namespace

bool TokenIdKit::IsSystemAppByFullTokenID(uint64_t fullTokenId)
{
    return (fullTokenId & SYSTEM_APP_BIT) != 0;
}

} // namespace OHOS::Security::AccessToken
