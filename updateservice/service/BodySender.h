#pragma once

#include "Behaviour.h"

#include <memory>
#include <QIODevice>
#include <QObject>
#include <QTimer>

class QSslSocket;

namespace updateservice {

/// Sends the body of an answer with the faults of a Behaviour, then ends the connection.
class BodySender : public QObject
{
    Q_OBJECT

public:
    BodySender(QSslSocket& socket, std::unique_ptr<QIODevice> body, const Behaviour& behaviour,
               QObject* parent);
    ~BodySender() override;

    void start();

private slots:
    void onBytesWritten();
    void onTick();

private:
    /// Sends up to @p most bytes.
    void send(std::int64_t most);
    void sendPiece(const QByteArray& piece);
    void end();

    QSslSocket& m_socket;
    std::unique_ptr<QIODevice> m_body;
    Behaviour m_behaviour;
    QTimer m_tick;
    std::int64_t m_sent = 0;
    std::int64_t m_last = 0; ///< where it stops
    bool m_ended = false;
};

} // namespace updateservice
