// The allocation functions of the module's contexts, as in napi/util/base_context.cpp, which also count the live
// contexts.
#include <new>

#include "napi/util/base_context.h"
#include "test/support/control.h"

namespace OHOS::HiviewDFX {

void* BaseContext::operator new(size_t size)
{
    ZelkTest::Count("contexts", 1);
    return ::operator new(size);
}

void BaseContext::operator delete(void* storage)
{
    ZelkTest::Count("contexts", -1);
    ::operator delete(storage);
}

} // namespace OHOS::HiviewDFX
