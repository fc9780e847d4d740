#include "TlsEndpoint.h"

#include "CertificateKit.h"

#include <QSslSocket>
#include <QTcpSocket>

namespace updateservice {

namespace {

constexpr int kFrontTimeoutMs = 10000;

QByteArray protocolName(QSsl::SslProtocol protocol)
{
    switch (protocol) {
    case QSsl::TlsV1_0:
        return "1.0";
    case QSsl::TlsV1_1:
        return "1.1";
    case QSsl::TlsV1_2:
        return "1.2";
    case QSsl::TlsV1_3:
        return "1.3";
    default:
        return "any";
    }
}

} // namespace

/// The connection to a process that speaks TLS (tests/windows/tls-front), because Wine's TLS can
/// only be a client. For each connection that process listens at one port; it answers every line.
class TlsEndpoint::Front
{
public:
    /// @return the port for clients, whose connections are forwarded to @p plainPort; 0 on failure
    quint16 listen(quint16 plainPort, quint16 port)
    {
        m_connection.connectToHost(
            QHostAddress(QHostAddress::LocalHost),
            static_cast<quint16>(qEnvironmentVariableIntValue("MARVIK_TLS_FRONT")));
        m_connection.waitForConnected(kFrontTimeoutMs);
        return static_cast<quint16>(
            ask(QByteArray::number(plainPort) + ' ' + QByteArray::number(port)).toUInt());
    }
    void stop() { ask("stop"); }

private:
    QByteArray ask(const QByteArray& line)
    {
        m_connection.write(line + '\n');
        while (!m_connection.canReadLine()) {
            if (!m_connection.waitForReadyRead(kFrontTimeoutMs))
                return {};
        }
        return m_connection.readLine().trimmed();
    }

    QTcpSocket m_connection;
};

TlsEndpoint::TlsEndpoint() = default;

TlsEndpoint::~TlsEndpoint() = default;

quint16 TlsEndpoint::open(QTcpServer& server, quint16 port)
{
    if (!server.listen(QHostAddress::LocalHost))
        return 0;
    m_front = std::make_unique<Front>();
    return m_front->listen(server.serverPort(), port);
}

void TlsEndpoint::close(QTcpServer& server)
{
    if (m_front)
        m_front->stop();
    m_front.reset();
    server.close();
}

void TlsEndpoint::begin(QSslSocket& socket, const CertificateKit& certificates,
                        const Behaviour& behaviour)
{
    Q_UNUSED(certificates) // the process has its own certificates
    socket.write(CertificateKit::name(behaviour.certificate).toLatin1() + ' ' +
                 protocolName(behaviour.protocol) +
                 (behaviour.stall == Behaviour::Stall::Handshake ? " stall\n" : " go\n"));
}

bool TlsEndpoint::isEncrypted(const QSslSocket& socket)
{
    Q_UNUSED(socket) // the process forwards only what clients have encrypted
    return true;
}

} // namespace updateservice
