#pragma once

#include <QByteArray>
#include <QLocalSocket>
#include <QObject>
#include <QTimer>

/// Receives one message from a later instance, then deletes itself. Closes the connection when the
/// message is too long or does not arrive in time.
class InstanceMessage : public QObject
{
    Q_OBJECT

public:
    /// @param socket a new connection; this object takes the ownership
    InstanceMessage(QLocalSocket* socket, int maxBytes, QObject* parent);

signals:
    void received(const QByteArray& message);

private:
    void read();
    void finish();

    QLocalSocket* m_socket;
    int m_maxBytes;
    QByteArray m_message;
    QTimer m_timeout;
};
