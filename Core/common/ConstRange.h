#pragma once

#include <cstddef>

/// The elements of a constant array, without its size in the type; for tables whose rows differ in
/// number. Usable in a range-based for.
template <typename Element>
class ConstRange
{
public:
    constexpr ConstRange() = default;
    template <std::size_t Count>
    constexpr explicit ConstRange(const Element (&elements)[Count])
        : m_begin(elements)
        , m_end(elements + Count)
    {
    }

    [[nodiscard]] constexpr const Element* begin() const { return m_begin; }
    [[nodiscard]] constexpr const Element* end() const { return m_end; }

private:
    const Element* m_begin = nullptr;
    const Element* m_end = nullptr;
};
