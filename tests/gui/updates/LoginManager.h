#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QList>
#include <QObject>
#include <QStringList>

/// The part of logind that grants inhibitor locks. A lock is the write end of a pipe: while a
/// process holds it, the read end reports no end of file.
class LoginManager : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

public:
    enum Behaviour { Grant, Refuse, Hesitate };

    explicit LoginManager(const QString& address);
    ~LoginManager() override;

    [[nodiscard]] bool isRegistered() const { return m_registered; }
    void setBehaviour(Behaviour behaviour) { m_behaviour = behaviour; }
    /// What, who, why and mode of every request.
    [[nodiscard]] QList<QStringList> requests() const { return m_requests; }
    /// Answers the request that was deferred.
    void grantNow();
    /// Whether a process holds the last granted lock.
    [[nodiscard]] bool isHeld() const;

public slots:
    Q_SCRIPTABLE QDBusUnixFileDescriptor Inhibit(const QString& what, const QString& who,
                                                 const QString& why, const QString& mode);

private:
    [[nodiscard]] QDBusUnixFileDescriptor newLock();
    void closeLock();

    QDBusConnection m_connection;
    bool m_registered = false;
    Behaviour m_behaviour = Grant;
    QList<QStringList> m_requests;
    QDBusMessage m_pending;
    int m_readEnd = -1;
};
