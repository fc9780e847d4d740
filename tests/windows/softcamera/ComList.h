#pragma once

#include "ComObject.h"

#include <utility>
#include <vector>

/// An enumerator over a list that does not change. @p HandOut converts an element into the value
/// that the caller receives and owns.
template <typename Enumerator, typename Element, typename Handed, Handed (*HandOut)(const Element&)>
class ComList final : public ComObject<Enumerator>
{
public:
    explicit ComList(std::vector<Element> elements, std::size_t next = 0)
        : m_elements(std::move(elements))
        , m_next(next)
    {
    }

    HRESULT STDMETHODCALLTYPE Next(ULONG wanted, Handed* out, ULONG* fetched) override
    {
        ULONG given = 0;
        while (given < wanted && m_next < m_elements.size())
            out[given++] = HandOut(m_elements[m_next++]);
        if (fetched)
            *fetched = given;
        return given == wanted ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override
    {
        m_next += count;
        return m_next <= m_elements.size() ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() override
    {
        m_next = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(Enumerator** clone) override
    {
        *clone = new ComList(m_elements, m_next);
        return S_OK;
    }

private:
    std::vector<Element> m_elements;
    std::size_t m_next;
};
