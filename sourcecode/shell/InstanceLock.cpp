#include "InstanceLock.h"

#include <QFileInfo>
#include <QThread>

namespace {

constexpr unsigned long kCreationMs = 50;

} // namespace

InstanceLock::InstanceLock(const QString& path)
    : m_path(path)
    , m_file(path)
{
    // By default a lock expires after 30 seconds.
    m_file.setStaleLockTime(0);
}

InstanceLock::Result InstanceLock::take()
{
    if (m_file.tryLock())
        return Result::Taken;
    // A full or read-only folder gives other errors: then there is no file that could be held.
    if (m_file.error() != QLockFile::LockFailedError)
        return Result::Unusable;
    if (isHeldNowOrSoon())
        return Result::HeldByOther;
    if (m_file.removeStaleLockFile() && m_file.tryLock())
        return Result::Taken;
    // Another start may have taken the lock since.
    return isHeld(m_path) ? Result::HeldByOther : Result::Unusable;
}

/// A process creates the file empty and locks it a moment later.
bool InstanceLock::isHeldNowOrSoon() const
{
    if (isHeld(m_path))
        return true;
    if (QFileInfo(m_path).size() > 0)
        return false;
    QThread::msleep(kCreationMs);
    return isHeld(m_path);
}

QString InstanceLock::problem() const
{
    const QString reason = m_file.error() == QLockFile::PermissionError
                               ? QStringLiteral("no permission")
                               : QStringLiteral("it cannot be created, written or removed");
    return QStringLiteral("lock file %1: %2").arg(m_path, reason);
}
