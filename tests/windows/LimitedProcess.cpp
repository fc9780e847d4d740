#include "LimitedProcess.h"

#include <array>
#include <qt_windows.h>
#include <string>

namespace {

constexpr DWORD kTimeoutMs = 60000;

} // namespace

int LimitedProcess::run(const QString& command)
{
    HANDLE own = nullptr;
    if (!::OpenProcessToken(::GetCurrentProcess(), TOKEN_ALL_ACCESS, &own))
        return -1;
    std::array<BYTE, SECURITY_MAX_SID_SIZE> administrators{};
    DWORD size = administrators.size();
    ::CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, administrators.data(), &size);
    // The group then counts only for what it is denied.
    SID_AND_ATTRIBUTES disabled{administrators.data(), 0};
    HANDLE limited = nullptr;
    const BOOL made = ::CreateRestrictedToken(own, DISABLE_MAX_PRIVILEGE, 1, &disabled, 0, nullptr,
                                              0, nullptr, &limited);
    ::CloseHandle(own);
    if (!made)
        return -1;
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    std::wstring line = command.toStdWString();
    const BOOL started = ::CreateProcessAsUserW(limited, nullptr, &line[0], nullptr, nullptr, FALSE,
                                                0, nullptr, nullptr, &startup, &process);
    ::CloseHandle(limited);
    if (!started)
        return -1;
    DWORD code = static_cast<DWORD>(-1);
    if (::WaitForSingleObject(process.hProcess, kTimeoutMs) == WAIT_OBJECT_0)
        ::GetExitCodeProcess(process.hProcess, &code);
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    return static_cast<int>(code);
}
