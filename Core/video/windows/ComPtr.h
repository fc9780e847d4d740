#pragma once

#include <unknwn.h>
#include <utility>

/// Owns one reference to a COM object.
template <typename Interface>
class ComPtr
{
public:
    ComPtr() = default;
    /// Takes over a reference that the caller owns.
    explicit ComPtr(Interface* owned)
        : m_object(owned)
    {
    }
    ~ComPtr() { reset(); }
    ComPtr(const ComPtr& other)
        : m_object(other.m_object)
    {
        if (m_object)
            m_object->AddRef();
    }
    ComPtr(ComPtr&& other) noexcept
        : m_object(std::exchange(other.m_object, nullptr))
    {
    }
    ComPtr& operator=(ComPtr other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }

    void reset()
    {
        if (Interface* object = std::exchange(m_object, nullptr))
            object->Release();
    }

    [[nodiscard]] Interface* get() const { return m_object; }
    Interface* operator->() const { return m_object; }
    [[nodiscard]] explicit operator bool() const { return m_object != nullptr; }

    /// For functions that return an owned reference through an argument; the previous reference is
    /// released.
    [[nodiscard]] Interface** put()
    {
        reset();
        return &m_object;
    }
    [[nodiscard]] void** putVoid() { return reinterpret_cast<void**>(put()); }

    /// Another interface of the same object; empty when it has none.
    template <typename Other>
    [[nodiscard]] ComPtr<Other> query() const
    {
        return query<Other>(__uuidof(Other));
    }
    /// For an interface whose header does not connect its id with its type.
    template <typename Other>
    [[nodiscard]] ComPtr<Other> query(REFIID iid) const
    {
        ComPtr<Other> other;
        if (m_object)
            m_object->QueryInterface(iid, other.putVoid());
        return other;
    }

private:
    Interface* m_object = nullptr;
};
