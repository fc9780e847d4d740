#pragma once

#include <objbase.h>

/// Initialises COM on the thread that makes this object, until the same thread destroys it. A
/// thread that has initialised COM already, with any threading model, keeps that.
class ComApartment
{
public:
    ComApartment()
        : m_entered(SUCCEEDED(::CoInitialize(nullptr)))
    {
    }
    ~ComApartment()
    {
        if (m_entered)
            ::CoUninitialize();
    }
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;

private:
    bool m_entered;
};
