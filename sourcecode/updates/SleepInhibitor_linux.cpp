#include "SleepInhibitor.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#include <QDebug>

/// The inhibitor of logind: it holds until its file descriptor is closed, also when the program
/// dies. See https://systemd.io/INHIBITOR_LOCKS.
class SleepInhibitor::Hold
{
public:
    explicit Hold(const QDBusPendingCall& call)
        : m_watcher(call)
    {
        QObject::connect(&m_watcher, &QDBusPendingCallWatcher::finished, &m_watcher,
                         [this] { keepLock(); });
    }

private:
    void keepLock()
    {
        const QDBusPendingReply<QDBusUnixFileDescriptor> reply = m_watcher;
        if (reply.isError())
            qWarning() << "the system may go to sleep:" << reply.error().message();
        else
            m_lock = reply.value();
    }

    QDBusPendingCallWatcher m_watcher;
    QDBusUnixFileDescriptor m_lock;
};

SleepInhibitor::SleepInhibitor(const QString& why)
{
    // A call without a bus is never told as finished.
    const QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected()) {
        qWarning() << "the system may go to sleep:" << bus.lastError().message();
        return;
    }
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("Inhibit"));
    message.setArguments({QStringLiteral("idle:sleep"), QStringLiteral("MarvikTools"), why,
                          QStringLiteral("block")});
    m_hold = std::make_unique<Hold>(bus.asyncCall(message));
}

SleepInhibitor::~SleepInhibitor() = default;
