#include "refbase.h"

namespace OHOS {

RefBase::~RefBase() = default;

void RefBase::IncStrongRef(const void*)
{
    strong_.fetch_add(1, std::memory_order_relaxed);
}

void RefBase::DecStrongRef(const void*)
{
    if (strong_.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        delete this;
    }
}

} // namespace OHOS
