#pragma once

/// The names of ProgramMutex, which installer and uninstaller look for.
namespace ProgramMutexNames {

/// In the session: the program of this user.
constexpr const wchar_t* kSession = L"Local\\MarvikTools-running";
/// On the computer: the programs of all users who are logged on.
constexpr const wchar_t* kComputer = L"Global\\MarvikTools-running";

} // namespace ProgramMutexNames
