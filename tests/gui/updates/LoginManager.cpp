#include "LoginManager.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace {

const QString kConnection = QStringLiteral("login manager of the test");

} // namespace

LoginManager::LoginManager(const QString& address)
    : m_connection(QDBusConnection::connectToBus(address, kConnection))
{
    m_registered = m_connection.registerObject(QStringLiteral("/org/freedesktop/login1"), this,
                                               QDBusConnection::ExportScriptableSlots) &&
                   m_connection.registerService(QStringLiteral("org.freedesktop.login1"));
}

LoginManager::~LoginManager()
{
    closeLock();
    QDBusConnection::disconnectFromBus(kConnection);
}

QDBusUnixFileDescriptor LoginManager::Inhibit(const QString& what, const QString& who,
                                              const QString& why, const QString& mode)
{
    m_requests.append({what, who, why, mode});
    switch (m_behaviour) {
    case Grant:
        return newLock();
    case Refuse:
        sendErrorReply(QDBusError::AccessDenied, QStringLiteral("not today"));
        break;
    case Hesitate:
        setDelayedReply(true);
        m_pending = message();
        break;
    }
    return {};
}

void LoginManager::grantNow()
{
    m_connection.send(m_pending.createReply(QVariant::fromValue(newLock())));
}

bool LoginManager::isHeld() const
{
    pollfd pipe{m_readEnd, POLLIN, 0};
    return m_readEnd >= 0 && ::poll(&pipe, 1, 0) == 0;
}

QDBusUnixFileDescriptor LoginManager::newLock()
{
    closeLock();
    int ends[2] = {-1, -1};
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return {};
    m_readEnd = ends[0];
    QDBusUnixFileDescriptor lock;
    lock.giveFileDescriptor(ends[1]);
    return lock;
}

void LoginManager::closeLock()
{
    if (m_readEnd >= 0)
        ::close(m_readEnd);
    m_readEnd = -1;
}
