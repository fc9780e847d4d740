#include "Console.h"

#include <io.h>
#include <objbase.h>
#include <qt_windows.h>

bool Console::isTerminal(FILE* file)
{
    // The console interprets colour sequences only in this mode.
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the C library keeps handles as numbers.
    const auto handle = reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(file)));
    DWORD mode = 0;
    return ::GetConsoleMode(handle, &mode) != 0 &&
           ::SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

/// The picture controls are COM objects, and the output is UTF-8.
Console::Session::Session()
{
    ::CoInitialize(nullptr);
    ::SetConsoleOutputCP(CP_UTF8);
}

Console::Session::~Session()
{
    ::CoUninitialize();
}
