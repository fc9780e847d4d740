#pragma once

#include "ComMemory.h"

#include <strmif.h>

/// A media type that a filter filled in; its format block and its object are given back.
class MediaType
{
public:
    MediaType() = default;
    ~MediaType()
    {
        ::CoTaskMemFree(m_type.pbFormat);
        if (m_type.pUnk)
            m_type.pUnk->Release();
    }
    MediaType(const MediaType&) = delete;
    MediaType& operator=(const MediaType&) = delete;

    /// For a function that fills it in, once.
    [[nodiscard]] AM_MEDIA_TYPE* put() { return &m_type; }
    [[nodiscard]] const AM_MEDIA_TYPE& get() const { return m_type; }

private:
    AM_MEDIA_TYPE m_type{};
};
