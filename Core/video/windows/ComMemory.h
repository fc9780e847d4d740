#pragma once

#include <memory>
#include <objbase.h>

struct ComMemoryDeleter
{
    void operator()(void* memory) const { ::CoTaskMemFree(memory); }
};

/// Text that a COM object allocated for its caller.
using ComText = std::unique_ptr<wchar_t, ComMemoryDeleter>;
