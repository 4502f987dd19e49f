#include "refbase.h"

namespace OHOS {

void RefCounter::IncStrong()
{
    strong_.fetch_add(1, std::memory_order_relaxed);
}

bool RefCounter::DecStrong()
{
    return strong_.fetch_sub(1, std::memory_order_acq_rel) == 1;
}

bool RefCounter::TryIncStrong()
{
    int count = strong_.load(std::memory_order_relaxed);
    while (count > 0) {
        if (strong_.compare_exchange_weak(count, count + 1, std::memory_order_acquire, std::memory_order_relaxed)) {
            return true;
        }
    }
    return false;
}

int RefCounter::StrongCount() const
{
    return strong_.load(std::memory_order_relaxed);
}

void RefCounter::IncWeak()
{
    weak_.fetch_add(1, std::memory_order_relaxed);
}

void RefCounter::DecWeak()
{
    if (weak_.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        delete this;
    }
}

RefBase::RefBase() : counter_(new RefCounter) {}

// A copy is a new object, which has no references yet.
RefBase::RefBase(const RefBase&) : RefBase() {}

RefBase& RefBase::operator=(const RefBase&) // NOLINT(bugprone-unhandled-self-assignment): nothing is assigned.
{
    return *this;
}

RefBase::~RefBase()
{
    counter_->DecWeak();
}

void RefBase::IncStrongRef(const void*)
{
    counter_->IncStrong();
}

void RefBase::DecStrongRef(const void*)
{
    if (counter_->DecStrong()) {
        delete this;
    }
}

int RefBase::GetSptrRefCount() const
{
    return counter_->StrongCount();
}

RefCounter* RefBase::GetRefCounter() const
{
    return counter_;
}

} // namespace OHOS
