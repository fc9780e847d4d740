#pragma once

#include <chrono>
#include <memory>
#include <QDir>
#include <QString>
#include <qt_windows.h>
#include <thread>

/// Another program that holds a file open for a while, as a virus scanner does.
class HeldByAnother
{
public:
    /// @param share what it lets others do meanwhile
    HeldByAnother(const QString& path, DWORD share, std::chrono::milliseconds time)
        : m_handle(::CreateFileW(
              reinterpret_cast<const wchar_t*>(QDir::toNativeSeparators(path).utf16()),
              GENERIC_READ, share, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr))
        , m_release([this, time] {
            std::this_thread::sleep_for(time);
            ::CloseHandle(m_handle);
        })
    {
    }
    ~HeldByAnother() { m_release.join(); }
    HeldByAnother(const HeldByAnother&) = delete;
    HeldByAnother& operator=(const HeldByAnother&) = delete;

    [[nodiscard]] bool isHeld() const { return m_handle != INVALID_HANDLE_VALUE; }

private:
    HANDLE m_handle;
    std::thread m_release;
};
