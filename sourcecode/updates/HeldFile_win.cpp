#include "HeldFile.h"

#include <QDir>
#include <qt_windows.h>

bool HeldFile::isHeld(const QString& path)
{
    const QString native = QDir::toNativeSeparators(path);
    HANDLE file =
        ::CreateFileW(reinterpret_cast<const wchar_t*>(native.utf16()), GENERIC_READ,
                      FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return ::GetLastError() == ERROR_SHARING_VIOLATION;
    ::CloseHandle(file);
    return false;
}
