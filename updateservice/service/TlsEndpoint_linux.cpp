#include "TlsEndpoint.h"

#include "CertificateKit.h"

#include <QSslConfiguration>
#include <QSslSocket>

namespace updateservice {

/// Not used: the sockets themselves speak TLS.
class TlsEndpoint::Front
{
};

TlsEndpoint::TlsEndpoint() = default;

TlsEndpoint::~TlsEndpoint() = default;

quint16 TlsEndpoint::open(QTcpServer& server, quint16 port)
{
    return server.listen(QHostAddress::LocalHost, port) ? server.serverPort() : 0;
}

void TlsEndpoint::close(QTcpServer& server)
{
    server.close();
}

void TlsEndpoint::begin(QSslSocket& socket, const CertificateKit& certificates,
                        const Behaviour& behaviour)
{
    const CertificateKit::Identity identity = certificates.identity(behaviour.certificate);
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(identity.certificate);
    configuration.setPrivateKey(identity.key);
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    configuration.setProtocol(behaviour.protocol);
    socket.setSslConfiguration(configuration);
    if (behaviour.stall != Behaviour::Stall::Handshake)
        socket.startServerEncryption();
}

bool TlsEndpoint::isEncrypted(const QSslSocket& socket)
{
    return socket.isEncrypted();
}

} // namespace updateservice
