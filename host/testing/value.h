// The values in requests and answers.
#ifndef HOST_TESTING_VALUE_H
#define HOST_TESTING_VALUE_H

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace OHOS::Host {

using Value = std::variant<std::monostate, bool, int64_t, std::string, std::vector<std::string>>;

} // namespace OHOS::Host

#endif // HOST_TESTING_VALUE_H
