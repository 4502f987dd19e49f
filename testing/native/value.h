// The values in requests and answers.
#ifndef TESTING_NATIVE_VALUE_H
#define TESTING_NATIVE_VALUE_H

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace OHOS::Host {

using Value = std::variant<std::monostate, bool, int64_t, std::string, std::vector<std::string>>;

} // namespace OHOS::Host

#endif // TESTING_NATIVE_VALUE_H
