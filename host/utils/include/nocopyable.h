// Base of classes that are neither copied nor moved, as on the platform.
#ifndef HOST_UTILS_NOCOPYABLE_H
#define HOST_UTILS_NOCOPYABLE_H

namespace OHOS {

class NoCopyable {
public:
    NoCopyable(const NoCopyable&) = delete;
    NoCopyable& operator=(const NoCopyable&) = delete;
    NoCopyable(NoCopyable&&) = delete;
    NoCopyable& operator=(NoCopyable&&) = delete;
    virtual ~NoCopyable() = default;

protected:
    NoCopyable() = default;
};

} // namespace OHOS

#endif // HOST_UTILS_NOCOPYABLE_H
