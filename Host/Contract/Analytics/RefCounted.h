#pragma once

#include <atomic>
#include <utility>

namespace Velkor::Analytics
{

// Base of every reference-counted object of the analytics library. It is inherited virtually,
// so an object that implements several counted interfaces has one count.
class IRefCounted
{
public:
    virtual void AddRef() const = 0;
    virtual void Release() const = 0;

protected:
    virtual ~IRefCounted() = default;
};

// The counting implementation: an object starts with no reference and deletes itself when the
// last reference is released. Create objects with MakeRef() and hold them in RefPtr.
template <typename Base>
class RefCounted : public Base
{
public:
    using Base::Base;

    void AddRef() const final { m_references.fetch_add(1, std::memory_order_relaxed); }

    void Release() const final
    {
        if (m_references.fetch_sub(1, std::memory_order_acq_rel) == 1)
        {
            delete this;
        }
    }

private:
    mutable std::atomic<long> m_references{0};
};

// Intrusive owning pointer to a counted object.
template <typename T>
class RefPtr
{
public:
    RefPtr() noexcept = default;
    RefPtr(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor)

    explicit RefPtr(T* object) noexcept : m_object(object)
    {
        if (m_object)
        {
            m_object->AddRef();
        }
    }

    template <typename U>
    RefPtr(const RefPtr<U>& other) noexcept : RefPtr(other.get())  // NOLINT
    {
    }

    RefPtr(const RefPtr& other) noexcept : RefPtr(other.m_object) {}
    RefPtr(RefPtr&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}

    RefPtr& operator=(RefPtr other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }

    ~RefPtr()
    {
        if (m_object)
        {
            m_object->Release();
        }
    }

    T* get() const noexcept { return m_object; }
    T* operator->() const noexcept { return m_object; }
    T& operator*() const noexcept { return *m_object; }
    explicit operator bool() const noexcept { return m_object != nullptr; }

    void reset() noexcept { RefPtr().swap(*this); }
    void swap(RefPtr& other) noexcept { std::swap(m_object, other.m_object); }

private:
    T* m_object = nullptr;
};

template <typename T, typename U>
bool operator==(const RefPtr<T>& lhs, const RefPtr<U>& rhs) noexcept
{
    return lhs.get() == rhs.get();
}

template <typename T>
bool operator==(const RefPtr<T>& lhs, std::nullptr_t) noexcept
{
    return !lhs;
}

template <typename T>
bool operator!=(const RefPtr<T>& lhs, std::nullptr_t) noexcept
{
    return static_cast<bool>(lhs);
}

// Creates a counted object: MakeRef<RefCounted<MyTracker>>(args...).
template <typename T, typename... Args>
RefPtr<T> MakeRef(Args&&... args)
{
    return RefPtr<T>(new T(std::forward<Args>(args)...));
}

}  // namespace Velkor::Analytics
