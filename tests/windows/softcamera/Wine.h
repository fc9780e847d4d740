#pragma once

#include <qt_windows.h>

/// Whether the system is Wine, where a test must allow what Windows does not do.
[[nodiscard]] inline bool isWine()
{
    HMODULE library = ::GetModuleHandleW(L"ntdll.dll");
    return library && ::GetProcAddress(library, "wine_get_version");
}
