#pragma once

#include <QByteArray>
#include <QLocalSocket>
#include <QObject>
#include <QTimer>

/// Receives one message of a further instance and deletes itself. Stops listening to a sender that
/// says too much or too little in time.
class InstanceMessage : public QObject
{
    Q_OBJECT

public:
    /// @param socket a fresh connection; owned from now on
    InstanceMessage(QLocalSocket* socket, int maxBytes, QObject* parent);

signals:
    void received(const QByteArray& message);

private:
    void read();
    void finish();

    QLocalSocket* m_socket;
    int m_maxBytes;
    QByteArray m_message;
    QTimer m_patience;
};
