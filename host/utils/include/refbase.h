// Reference-counted objects and their strong and weak pointers, as on the platform.
#ifndef HOST_UTILS_REFBASE_H
#define HOST_UTILS_REFBASE_H

#include <atomic>
#include <cstddef>
#include <utility>

namespace OHOS {

// The counts of one object. It outlives the object for as long as a weak pointer refers to it.
class __attribute__((visibility("default"))) RefCounter {
public:
    void IncStrong();
    // True when this was the last strong reference: the caller then destroys the object.
    bool DecStrong();
    // Takes a strong reference unless the object is already gone.
    bool TryIncStrong();
    int StrongCount() const;
    void IncWeak();
    // Destroys the counter with the last reference of either kind.
    void DecWeak();

private:
    ~RefCounter() = default;

    std::atomic<int> strong_{0};
    // All strong references together hold one weak one, held by the object itself.
    std::atomic<int> weak_{1};
};

// Base of everything that sptr and wptr point to; usually a virtual base. An object is made with `new`, handed to an
// sptr at once, and destroyed by the last sptr. Counts may be changed from any thread.
class __attribute__((visibility("default"))) RefBase {
public:
    RefBase();
    RefBase(const RefBase&);
    RefBase& operator=(const RefBase&);
    virtual ~RefBase();

    void IncStrongRef(const void* owner);
    void DecStrongRef(const void* owner);
    int GetSptrRefCount() const;
    RefCounter* GetRefCounter() const;

private:
    RefCounter* counter_;
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

    template <typename... Args>
    static sptr<T> MakeSptr(Args&&... args)
    {
        return sptr<T>(new T(std::forward<Args>(args)...));
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
    template <typename U>
    friend class wptr;

    // Takes over a reference that has been counted already.
    struct Counted {};
    sptr(T* object, Counted) : object_(object) {}

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

// Weak pointer: promote() gives a strong pointer while the object lives, null afterwards.
template <typename T>
class wptr {
public:
    wptr() = default;
    wptr(const sptr<T>& strong) : wptr(strong.GetRefPtr()) {} // NOLINT(google-explicit-constructor)
    wptr(T* object) : object_(object)                         // NOLINT(google-explicit-constructor)
    {
        if (object != nullptr) {
            counter_ = object->GetRefCounter();
            counter_->IncWeak();
        }
    }
    wptr(const wptr& other) : object_(other.object_), counter_(other.counter_)
    {
        if (counter_ != nullptr) {
            counter_->IncWeak();
        }
    }
    wptr(wptr&& other) noexcept
        : object_(std::exchange(other.object_, nullptr)), counter_(std::exchange(other.counter_, nullptr))
    {
    }
    ~wptr()
    {
        if (counter_ != nullptr) {
            counter_->DecWeak();
        }
    }

    wptr& operator=(wptr other) noexcept
    {
        std::swap(object_, other.object_);
        std::swap(counter_, other.counter_);
        return *this;
    }

    sptr<T> promote() const
    {
        if (counter_ == nullptr || !counter_->TryIncStrong()) {
            return nullptr;
        }
        return sptr<T>(object_, typename sptr<T>::Counted());
    }

private:
    T* object_ = nullptr;
    RefCounter* counter_ = nullptr;
};

} // namespace OHOS

#endif // HOST_UTILS_REFBASE_H
