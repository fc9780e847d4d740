#include "LogCategories.h"
#include "SleepInhibitor.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>

/// An inhibitor lock of logind. It ends when its file descriptor is closed, which the kernel does
/// when the program ends in any way. See https://systemd.io/INHIBITOR_LOCKS.
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
            qCWarning(updateLog) << "the system may go to sleep:" << reply.error().message();
        else
            m_lock = reply.value();
    }

    QDBusPendingCallWatcher m_watcher;
    QDBusUnixFileDescriptor m_lock;
};

SleepInhibitor::SleepInhibitor(const QString& why)
{
    // Without a connection to the bus, a pending call never emits finished().
    const QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected()) {
        qCWarning(updateLog) << "the system may go to sleep:" << bus.lastError().message();
        return;
    }
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("Inhibit"));
    message.setArguments({QStringLiteral("idle:shutdown:sleep"), QStringLiteral("MarvikTools"), why,
                          QStringLiteral("block")});
    m_hold = std::make_unique<Hold>(bus.asyncCall(message));
}

SleepInhibitor::~SleepInhibitor() = default;
