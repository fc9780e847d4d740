// What the script of the installer (MarvikTools.nsi) and the package of Windows Installer
// (MarvikTools.wxs) call. Linked without the libraries of the program, so that it runs before they
// are installed.
#include "RunningProgram.h"

#include <string>
#include <windows.h>

// After windows.h, which they need.
#include <msi.h>
#include <msiquery.h>

namespace {

constexpr unsigned long kLimitMs = 15000;

bool isFolder(DWORD attributes)
{
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 &&
           (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0;
}

} // namespace

#define EXPORTED extern "C" __declspec(dllexport)

/// @return 1 when the program has ended, 0 when it is still at work
EXPORTED int programEnds(int onComputer)
{
    using Place = RunningProgram::Place;
    return RunningProgram(onComputer != 0 ? Place::Computer : Place::Session).endsWithin(kLimitMs)
               ? 1
               : 0;
}

/// Moves what lies in @p from into @p to. A file of which @p to has another one is removed. What
/// can be neither moved nor removed stays.
EXPORTED void moveRest(const wchar_t* from, const wchar_t* to)
{
    const std::wstring source = std::wstring(from) + L'\\';
    const std::wstring target = std::wstring(to) + L'\\';
    WIN32_FIND_DATAW entry{};
    HANDLE search = ::FindFirstFileW((source + L'*').c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE)
        return;
    do {
        const std::wstring name = entry.cFileName;
        if (name == L"." || name == L"..")
            continue;
        const std::wstring old = source + name;
        const std::wstring wanted = target + name;
        if (::MoveFileExW(old.c_str(), wanted.c_str(), 0) ||
            ::GetLastError() != ERROR_ALREADY_EXISTS)
            continue;
        if (isFolder(entry.dwFileAttributes)) {
            moveRest(old.c_str(), wanted.c_str());
            ::RemoveDirectoryW(old.c_str());
        } else {
            ::DeleteFileW(old.c_str());
        }
    } while (::FindNextFileW(search, &entry));
    ::FindClose(search);
}

/// Called by Windows Installer before it changes anything.
EXPORTED UINT __stdcall RequireEndOfProgram(MSIHANDLE installation)
{
    if (programEnds(1) == 1)
        return ERROR_SUCCESS;
    const MSIHANDLE record = ::MsiCreateRecord(0);
    ::MsiRecordSetStringW(record, 0,
                          L"MarvikTools is still at work, perhaps in the session of another user. "
                          L"Quit it in the menu of its tray icon, then try again.");
    ::MsiProcessMessage(installation, INSTALLMESSAGE_ERROR, record);
    ::MsiCloseHandle(record);
    return ERROR_INSTALL_FAILURE;
}
