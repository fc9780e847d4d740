#include "FileLock.h"

#include <QDir>
#include <qt_windows.h>
#include <thread>

namespace {

/// Opening a file has no time-out.
constexpr std::chrono::milliseconds kRetryPause{5};

} // namespace

struct FileLock::Platform
{
    explicit Platform(HANDLE opened)
        : file(opened)
    {
    }
    ~Platform() { ::CloseHandle(file); }
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;

    HANDLE file;
};

FileLock::FileLock() = default;
FileLock::~FileLock() = default;

bool FileLock::acquire(const QString& path, std::chrono::milliseconds limit)
{
    const QString native = QDir::toNativeSeparators(path);
    const auto end = std::chrono::steady_clock::now() + limit;
    for (;;) {
        // No other program can open the file. The system removes it when the handle is closed.
        HANDLE file = ::CreateFileW(reinterpret_cast<const wchar_t*>(native.utf16()),
                                    GENERIC_WRITE | DELETE, 0, nullptr, OPEN_ALWAYS,
                                    FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
        if (file != INVALID_HANDLE_VALUE) {
            m_platform = std::make_unique<Platform>(file);
            return true;
        }
        // A file that is about to vanish refuses the access.
        const DWORD error = ::GetLastError();
        const bool isTaken = error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED;
        if (!isTaken || std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(kRetryPause);
    }
}
