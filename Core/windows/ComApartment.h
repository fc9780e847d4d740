#pragma once

#include <objbase.h>

/// COM on the thread that makes this object, until the same thread destroys it. Where the thread
/// has COM already, with whichever threading, that goes on to serve.
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
