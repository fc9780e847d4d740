#include "RunningProgram.h"

#include "ProgramMutexNames.h"

#include <windows.h>

namespace {

constexpr DWORD kPauseMs = 100;

/// The watcher's hidden window tells which process is the program's: a folder of the program's name
/// has a window with the same title.
DWORD programId()
{
    DWORD id = 0;
    if (HWND watcher = ::FindWindowW(L"velmarin", nullptr))
        ::GetWindowThreadProcessId(watcher, &id);
    return id;
}

/// The thread of the main window, which is found even when it is hidden in the tray.
DWORD mainThreadOf(DWORD program)
{
    HWND window = nullptr;
    while ((window = ::FindWindowExW(nullptr, window, nullptr, L"MarvikTools"))) {
        DWORD id = 0;
        const DWORD thread = ::GetWindowThreadProcessId(window, &id);
        if (id == program)
            return thread;
    }
    return 0;
}

/// A process that was asked to end: older versions of the program have no mutex.
class Process
{
public:
    ~Process() { close(); }
    Process() = default;
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    [[nodiscard]] DWORD id() const { return m_id; }
    void open(DWORD id)
    {
        close();
        m_id = id;
        m_handle = ::OpenProcess(SYNCHRONIZE, FALSE, id);
    }
    [[nodiscard]] bool isRunning() const
    {
        return m_handle && ::WaitForSingleObject(m_handle, 0) == WAIT_TIMEOUT;
    }

private:
    void close() const
    {
        if (m_handle)
            ::CloseHandle(m_handle);
    }

    DWORD m_id = 0;
    HANDLE m_handle = nullptr;
};

} // namespace

RunningProgram::RunningProgram(Place place)
    : m_place(place)
{
}

bool RunningProgram::endsWithin(unsigned long timeoutMs) const
{
    const ULONGLONG start = ::GetTickCount64();
    Process asked;
    while (true) {
        const DWORD id = programId();
        // A program that is just starting has no window yet.
        const DWORD thread = id != 0 && id != asked.id() ? mainThreadOf(id) : 0;
        if (thread != 0) {
            asked.open(id);
            ::PostThreadMessageW(thread, WM_QUIT, 0, 0);
        }
        if (id == 0 && !asked.isRunning() && !isRunning())
            return true;
        if (::GetTickCount64() - start >= timeoutMs)
            return false;
        ::Sleep(kPauseMs);
    }
}

bool RunningProgram::isRunning() const
{
    const wchar_t* name =
        m_place == Place::Computer ? ProgramMutexNames::kComputer : ProgramMutexNames::kSession;
    if (HANDLE mutex = ::OpenMutexW(SYNCHRONIZE, FALSE, name)) {
        ::CloseHandle(mutex);
        return true;
    }
    // One that may not be opened exists.
    return ::GetLastError() == ERROR_ACCESS_DENIED;
}
