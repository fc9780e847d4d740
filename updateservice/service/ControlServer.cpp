#include "ControlServer.h"

#include <QLocalSocket>

namespace updateservice {

ControlServer::ControlServer(UpdateService& service, QObject* parent)
    : QObject(parent)
    , m_commands(service)
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, &ControlServer::onNewConnection);
}

bool ControlServer::listen(const QString& path)
{
    QLocalServer::removeServer(path);
    return m_server.listen(path);
}

void ControlServer::onNewConnection()
{
    while (QLocalSocket* socket = m_server.nextPendingConnection()) {
        connect(socket, &QLocalSocket::readyRead, this, &ControlServer::onReadyRead);
        connect(socket, &QLocalSocket::disconnected, socket, &QLocalSocket::deleteLater);
    }
}

void ControlServer::onReadyRead()
{
    auto* socket = qobject_cast<QLocalSocket*>(sender());
    if (!socket || !socket->canReadLine())
        return;
    socket->write(m_commands.run(QString::fromUtf8(socket->readLine()).trimmed()).toUtf8() + '\n');
    socket->disconnectFromServer();
}

} // namespace updateservice
