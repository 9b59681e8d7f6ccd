#pragma once

#include <memory>
#include <stdexcept>
#include <utility>

namespace Velkor::KT::Tracking
{

// A shared pointer that is never empty. Constructing it from an empty pointer throws
// std::logic_error("NotNull can not initialized by null"), so an object that keeps a required
// collaborator in one fails to construct instead of existing half-built.
template <typename T>
class NotNull
{
public:
    template <typename U>
    NotNull(std::shared_ptr<U> pointer)  // NOLINT(google-explicit-constructor)
        : m_pointer(std::move(pointer))
    {
        if (!m_pointer)
        {
            throw std::logic_error("NotNull can not initialized by null");
        }
    }

    NotNull(std::nullptr_t) = delete;

    // Copy only: a move would leave the source empty.
    NotNull(const NotNull&) = default;
    NotNull& operator=(const NotNull&) = default;

    T* get() const noexcept { return m_pointer.get(); }
    T& operator*() const noexcept { return *m_pointer; }
    T* operator->() const noexcept { return m_pointer.get(); }
    const std::shared_ptr<T>& shared() const noexcept { return m_pointer; }
    operator const std::shared_ptr<T>&() const noexcept { return m_pointer; }  // NOLINT

private:
    std::shared_ptr<T> m_pointer;
};

}  // namespace Velkor::KT::Tracking
