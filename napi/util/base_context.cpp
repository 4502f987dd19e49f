#include "napi/util/base_context.h"

#include <new>

namespace OHOS::HiviewDFX {

void* BaseContext::operator new(size_t size)
{
    return ::operator new(size);
}

void BaseContext::operator delete(void* storage)
{
    ::operator delete(storage);
}

} // namespace OHOS::HiviewDFX
