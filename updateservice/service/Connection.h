#pragma once

#include "Behaviour.h"
#include "RequestParser.h"

#include <QObject>
#include <QSslSocket>

namespace updateservice {

class UpdateService;
struct Reply;

/// One connection: one request, one answer.
class Connection : public QObject
{
    Q_OBJECT

public:
    /// @param behaviour of the service at the moment of the connection; it applies to the handshake
    Connection(qintptr descriptor, UpdateService& service, const Behaviour& behaviour);
    ~Connection() override;

private slots:
    void onReadyRead();

private:
    void answer(Reply reply, const Behaviour& behaviour);

    UpdateService& m_service;
    QSslSocket m_socket;
    RequestParser m_parser;
    bool m_answered = false;
};

} // namespace updateservice
