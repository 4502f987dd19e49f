// The limits of the reference service. A call that exceeds one is refused as a whole.
#ifndef SERVICE_REFERENCE_SERVICE_LIMITS_H
#define SERVICE_REFERENCE_SERVICE_LIMITS_H

#include <cstddef>
#include <cstdint>

namespace OHOS::Host {

// The code of a refused call: a text is not an item, or a limit is exceeded. Its answer is `false` or empty.
constexpr int32_t CODE_REFUSED = 2;

// In bytes.
constexpr size_t MAX_ITEM_SIZE = 1'000'000;     // One item's whole text.
constexpr size_t MAX_REQUEST_SIZE = 16'000'000; // All texts of a request.
constexpr size_t MAX_ANSWER_SIZE = 16'000'000;  // All texts of an answer, with their escapes.
constexpr size_t MAX_LOG_SIZE = 64'000'000;     // All keys and values of a log.

constexpr size_t MAX_KEYS = 10'000; // Of a log.

} // namespace OHOS::Host

#endif // SERVICE_REFERENCE_SERVICE_LIMITS_H
