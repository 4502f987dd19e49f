// The access-token kit's question about a caller, as on the platform.
#ifndef HOST_ACCESS_TOKEN_TOKENID_KIT_H
#define HOST_ACCESS_TOKEN_TOKENID_KIT_H

#include <cstdint>

namespace OHOS::Security::AccessToken {

class __attribute__((visibility("default"))) TokenIdKit {
public:
    // True for the full token id of a system application: bit 32 is set.
    static bool IsSystemAppByFullTokenID(uint64_t fullTokenId);
};

} // namespace OHOS::Security::AccessToken

#endif // HOST_ACCESS_TOKEN_TOKENID_KIT_H
