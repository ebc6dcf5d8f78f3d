#pragma once

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace portable {

// Base of every object that is passed by SmartPointer. The count starts at 0:
// a new object belongs to nobody until the first SmartPointer takes it.
class ReferenceCountedObject
{
public:
    ReferenceCountedObject() = default;
    ReferenceCountedObject(ReferenceCountedObject const&) : mRefCount(0) {}
    ReferenceCountedObject& operator=(ReferenceCountedObject const&) { return *this; }
    virtual ~ReferenceCountedObject() = default;

    void addRef() const { mRefCount.fetch_add(1, std::memory_order_relaxed); }

    void release() const
    {
        // Kept in release builds: a release without a reference is a broken
        // ownership invariant, and going on would free memory twice.
        if (mRefCount.load(std::memory_order_relaxed) <= 0) {
            std::fprintf(stderr, "Assertion failed: mRefCount > 0\n");
            std::abort();
        }
        if (mRefCount.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete this;
    }

    std::int64_t refCount() const { return mRefCount.load(std::memory_order_relaxed); }

private:
    mutable std::atomic<std::int64_t> mRefCount{0};
};

template <typename T>
class SmartPointer
{
public:
    SmartPointer() = default;
    SmartPointer(std::nullptr_t) {}
    SmartPointer(T* p) : mPtr(p) { if (mPtr) mPtr->addRef(); }
    SmartPointer(SmartPointer const& o) : mPtr(o.mPtr) { if (mPtr) mPtr->addRef(); }
    SmartPointer(SmartPointer&& o) noexcept : mPtr(std::exchange(o.mPtr, nullptr)) {}
    template <typename U>
    SmartPointer(SmartPointer<U> const& o) : mPtr(o.get()) { if (mPtr) mPtr->addRef(); }
    ~SmartPointer() { if (mPtr) mPtr->release(); }

    SmartPointer& operator=(SmartPointer o) noexcept
    {
        std::swap(mPtr, o.mPtr);
        return *this;
    }

    T* get() const { return mPtr; }
    T* operator->() const { return mPtr; }
    T& operator*() const { return *mPtr; }
    explicit operator bool() const { return mPtr != nullptr; }
    bool isNull() const { return mPtr == nullptr; }

    // The model decides what an object is by casting; a failed cast is null.
    template <typename U>
    SmartPointer<U> dynamicCast() const { return SmartPointer<U>(dynamic_cast<U*>(mPtr)); }

    template <typename U>
    bool operator==(SmartPointer<U> const& o) const { return mPtr == o.get(); }
    template <typename U>
    bool operator!=(SmartPointer<U> const& o) const { return mPtr != o.get(); }
    bool operator==(std::nullptr_t) const { return mPtr == nullptr; }
    bool operator!=(std::nullptr_t) const { return mPtr != nullptr; }

private:
    T* mPtr = nullptr;
};

template <typename U, typename T>
SmartPointer<U> dynamic_pointer_cast(SmartPointer<T> const& p)
{
    return p.template dynamicCast<U>();
}

} // namespace portable
