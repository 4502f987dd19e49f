#include "napi/util/base_context.h"

#include <cstring>

namespace OHOS::HiviewDFX {

void* BaseContext::operator new(size_t size)
{
    return std::memset(::operator new(size), 0, size);
}

void BaseContext::operator delete(void* storage)
{
    ::operator delete(storage);
}

} // namespace OHOS::HiviewDFX
