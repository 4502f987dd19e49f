// Reference-counted objects and their strong pointers, as on the platform; and the name of its weak pointers.
#ifndef HOST_UTILS_REFBASE_H
#define HOST_UTILS_REFBASE_H

#include <atomic>
#include <cstddef>
#include <utility>

namespace OHOS {

// Base of everything that sptr points to; usually a virtual base. An object is made with `new`, handed to an sptr at
// once, and destroyed by the last sptr. The count may be changed from any thread.
class __attribute__((visibility("default"))) RefBase {
public:
    RefBase() = default;
    virtual ~RefBase();

    void IncStrongRef(const void* owner);
    void DecStrongRef(const void* owner);

private:
    std::atomic<int> strong_{0};
};

// Strong pointer: keeps its object alive.
template <typename T>
class sptr {
public:
    sptr() = default;
    sptr(std::nullptr_t) {}           // NOLINT(google-explicit-constructor): a pointer's conversions.
    sptr(T* object) : object_(object) // NOLINT(google-explicit-constructor)
    {
        Acquire();
    }
    sptr(const sptr& other) : object_(other.object_)
    {
        Acquire();
    }
    sptr(sptr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    template <typename U>
    sptr(const sptr<U>& other) : object_(other.GetRefPtr()) // NOLINT(google-explicit-constructor)
    {
        Acquire();
    }
    ~sptr()
    {
        Release();
    }

    sptr& operator=(sptr other) noexcept
    {
        std::swap(object_, other.object_);
        return *this;
    }

    T* GetRefPtr() const
    {
        return object_;
    }
    T* operator->() const
    {
        return object_;
    }
    T& operator*() const
    {
        return *object_;
    }
    explicit operator bool() const
    {
        return object_ != nullptr;
    }
    bool operator==(std::nullptr_t) const
    {
        return object_ == nullptr;
    }
    bool operator!=(std::nullptr_t) const
    {
        return object_ != nullptr;
    }
    bool operator==(const sptr& other) const
    {
        return object_ == other.object_;
    }
    bool operator!=(const sptr& other) const
    {
        return object_ != other.object_;
    }

private:
    void Acquire() const
    {
        if (object_ != nullptr) {
            object_->IncStrongRef(this);
        }
    }
    void Release() const
    {
        if (object_ != nullptr) {
            object_->DecStrongRef(this);
        }
    }

    T* object_ = nullptr;
};

// Weak pointer: Client::OnRemoteDied takes one. Nothing on a desktop looks through it, so it points to nothing.
template <typename T>
class wptr {
};

} // namespace OHOS

#endif // HOST_UTILS_REFBASE_H
