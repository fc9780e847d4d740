#pragma once

#include <memory>
#include <qt_windows.h>

struct WinHandleCloser
{
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { ::CloseHandle(handle); }
};

/// Owns a kernel handle of the kind whose invalid value is null.
using WinHandle = std::unique_ptr<void, WinHandleCloser>;
