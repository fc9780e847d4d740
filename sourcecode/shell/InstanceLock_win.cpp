#include "InstanceLock.h"

#include <QDir>
#include <qt_windows.h>

bool InstanceLock::isHeld(const QString& path)
{
    // QLockFile keeps its file open and lets other processes only read it.
    const QString native = QDir::toNativeSeparators(path);
    HANDLE file = ::CreateFileW(reinterpret_cast<const wchar_t*>(native.utf16()), GENERIC_WRITE,
                                FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return ::GetLastError() == ERROR_SHARING_VIOLATION;
    ::CloseHandle(file);
    return false;
}
