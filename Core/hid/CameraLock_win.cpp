#include "CameraLock.h"
#include "LogCategories.h"
#include "WinHandle.h"

#include <array>
#include <QCryptographicHash>
#include <QFileInfo>
#include <sddl.h>

namespace {

/// What the owner writes for those who wait.
struct OwnerRecord
{
    DWORD process;
    DWORD use;
};

struct ViewCloser
{
    void operator()(OwnerRecord* view) const { ::UnmapViewOfFile(view); }
};
using OwnerView = std::unique_ptr<OwnerRecord, ViewCloser>;

struct LocalMemoryFree
{
    void operator()(void* memory) const { ::LocalFree(memory); }
};
using LocalMemory = std::unique_ptr<void, LocalMemoryFree>;

const wchar_t* wide(const QString& text)
{
    return reinterpret_cast<const wchar_t*>(text.utf16());
}

/// Names of kernel objects may not contain the backslashes of a path.
QString lockName(const QByteArray& hidPath)
{
    const QByteArray hash =
        QCryptographicHash::hash(hidPath.toLower(), QCryptographicHash::Sha256).toHex();
    return QStringLiteral("MarvikTools-camera-") + QString::fromLatin1(hash);
}

/// All users of the computer may take the lock; by default an object belongs to the user who makes
/// it.
WinHandle makeMutex(const QString& name)
{
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (!::ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:(A;;GA;;;WD)", SDDL_REVISION_1,
                                                                &descriptor, nullptr))
        return nullptr;
    const LocalMemory owned(descriptor);
    SECURITY_ATTRIBUTES attributes{sizeof attributes, descriptor, FALSE};
    return WinHandle(::CreateMutexExW(&attributes, wide(QStringLiteral("Global\\") + name), 0,
                                      SYNCHRONIZE | MUTEX_MODIFY_STATE));
}

/// Shared memory in the session: outside a session's own name space only services may make any.
WinHandle makeRecord(const QString& name)
{
    return WinHandle(::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                          sizeof(OwnerRecord),
                                          wide(QStringLiteral("Local\\") + name)));
}

OwnerView viewOf(const WinHandle& record)
{
    if (!record)
        return nullptr;
    return OwnerView(static_cast<OwnerRecord*>(
        ::MapViewOfFile(record.get(), FILE_MAP_ALL_ACCESS, 0, 0, sizeof(OwnerRecord))));
}

QString programOf(DWORD process)
{
    const WinHandle handle(::OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process));
    std::array<wchar_t, MAX_PATH> path{};
    auto length = static_cast<DWORD>(path.size());
    if (!handle || !::QueryFullProcessImageNameW(handle.get(), 0, path.data(), &length))
        return {};
    return QFileInfo(QString::fromWCharArray(path.data(), static_cast<int>(length)))
        .completeBaseName();
}

bool isTaken(DWORD waitResult)
{
    // A dead owner leaves the mutex to the next one.
    return waitResult == WAIT_OBJECT_0 || waitResult == WAIT_ABANDONED;
}

} // namespace

struct CameraLock::Platform
{
    WinHandle mutex; ///< null when there is none, and when another object of this program holds it
    WinHandle record;
    OwnerView owner;

    ~Platform()
    {
        if (owner)
            *owner = {};
        if (mutex)
            ::ReleaseMutex(mutex.get());
    }
};

CameraLock::CameraLock() = default;
CameraLock::~CameraLock() = default;

bool CameraLock::acquire(const QByteArray& hidPath, Use use, std::chrono::milliseconds limit)
{
    release();
    const QString name = lockName(hidPath);
    WinHandle mutex = makeMutex(name);
    WinHandle record = makeRecord(name);
    OwnerView owner = viewOf(record);
    if (mutex) {
        // Before the first wait: a thread that owns a mutex acquires it again.
        if (owner && owner->process == ::GetCurrentProcessId()) {
            m_platform = std::make_unique<Platform>();
            return true;
        }
        DWORD result = ::WaitForSingleObject(mutex.get(), 0);
        const bool isLong = owner && owner->use == static_cast<DWORD>(Use::Firmware);
        if (!isTaken(result) && !isLong)
            result = ::WaitForSingleObject(mutex.get(), static_cast<DWORD>(limit.count()));
        if (!isTaken(result)) {
            m_holder = {};
            if (owner && owner->process != 0)
                m_holder = {owner->process, programOf(owner->process),
                            static_cast<Use>(owner->use)};
            return false;
        }
    } else {
        qCWarning(hidLog) << "The camera is used without a lock:" << ::GetLastError();
    }
    m_platform = std::make_unique<Platform>();
    m_platform->mutex = std::move(mutex);
    m_platform->record = std::move(record);
    m_platform->owner = std::move(owner);
    if (m_platform->owner)
        *m_platform->owner = {::GetCurrentProcessId(), static_cast<DWORD>(use)};
    return true;
}

void CameraLock::release()
{
    m_platform.reset();
}
