#pragma once

#include <QString>
#include <qt_windows.h>

/// The main window of the program in any process; found even when it is hidden in the tray.
inline HWND programWindow()
{
    return ::FindWindowW(nullptr, L"MarvikTools");
}

/// The process of a window, to wait for its end.
class WindowProcess
{
public:
    explicit WindowProcess(HWND window)
    {
        DWORD id = 0;
        m_thread = ::GetWindowThreadProcessId(window, &id);
        m_process =
            ::OpenProcess(SYNCHRONIZE | PROCESS_QUERY_INFORMATION | PROCESS_TERMINATE, FALSE, id);
    }
    ~WindowProcess() { ::CloseHandle(m_process); }
    WindowProcess(const WindowProcess&) = delete;
    WindowProcess& operator=(const WindowProcess&) = delete;

    /// Requests the action of "Quit" in the tray's menu.
    void quit() const { ::PostThreadMessageW(m_thread, WM_QUIT, 0, 0); }
    [[nodiscard]] bool waitForEnd(DWORD timeoutMs) const
    {
        return ::WaitForSingleObject(m_process, timeoutMs) == WAIT_OBJECT_0;
    }
    [[nodiscard]] DWORD exitCode() const
    {
        DWORD code = STILL_ACTIVE;
        ::GetExitCodeProcess(m_process, &code);
        return code;
    }

private:
    HANDLE m_process = nullptr;
    DWORD m_thread = 0;
};
