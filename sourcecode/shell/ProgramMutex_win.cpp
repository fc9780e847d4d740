#include "ProgramMutex.h"

#include "LogCategories.h"
#include "ProgramMutexNames.h"

#include <qt_windows.h>

// After qt_windows.h, which it needs.
#include <sddl.h>

namespace {

/// Everyone may open the mutex to see that it exists, and do nothing else with it: an installation
/// for all users looks for the programs of other users, too.
constexpr const wchar_t* kAccess = L"D:(A;;0x00100000;;;WD)";

/// A mutex that exists at least as long as this object. Nobody owns it: only its existence counts.
class NamedMutex
{
public:
    explicit NamedMutex(const wchar_t* name)
    {
        SECURITY_ATTRIBUTES attributes{sizeof(attributes), nullptr, FALSE};
        if (::ConvertStringSecurityDescriptorToSecurityDescriptorW(
                kAccess, SDDL_REVISION_1, &attributes.lpSecurityDescriptor, nullptr)) {
            // Opened with this access only when the program of another user has created it.
            m_handle = ::CreateMutexExW(&attributes, name, 0, SYNCHRONIZE);
            ::LocalFree(attributes.lpSecurityDescriptor);
        }
        if (!m_handle)
            qCWarning(shellLog) << "installers do not notice this program:"
                                << QString::fromWCharArray(name) << ::GetLastError();
    }
    ~NamedMutex()
    {
        if (m_handle)
            ::CloseHandle(m_handle);
    }
    NamedMutex(const NamedMutex&) = delete;
    NamedMutex& operator=(const NamedMutex&) = delete;

private:
    HANDLE m_handle = nullptr;
};

} // namespace

class ProgramMutex::Objects
{
    NamedMutex m_session{ProgramMutexNames::kSession};
    NamedMutex m_computer{ProgramMutexNames::kComputer};
};

ProgramMutex::ProgramMutex()
    : m_objects(std::make_unique<Objects>())
{
}

ProgramMutex::~ProgramMutex() = default;
