#include "TlsEndpoint.h"

#include "CertificateKit.h"

#include <QSslSocket>
#include <QTcpSocket>

namespace updateservice {

namespace {

constexpr int kPatienceMs = 10000;

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

/// A process that does it (tests/windows/tls-front): Wine's TLS knows clients alone. One connection
/// to it stands for one port at which it listens; each line has an answer.
class TlsEndpoint::Front
{
public:
    /// @return the port for clients whose connections are passed on to @p plainPort; 0 for none
    quint16 listen(quint16 plainPort, quint16 port)
    {
        m_line.connectToHost(
            QHostAddress(QHostAddress::LocalHost),
            static_cast<quint16>(qEnvironmentVariableIntValue("MARVIK_TLS_FRONT")));
        m_line.waitForConnected(kPatienceMs);
        return static_cast<quint16>(
            ask(QByteArray::number(plainPort) + ' ' + QByteArray::number(port)).toUInt());
    }
    void stop() { ask("stop"); }

private:
    QByteArray ask(const QByteArray& line)
    {
        m_line.write(line + '\n');
        while (!m_line.canReadLine()) {
            if (!m_line.waitForReadyRead(kPatienceMs))
                return {};
        }
        return m_line.readLine().trimmed();
    }

    QTcpSocket m_line;
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
    Q_UNUSED(certificates) // the process has its own
    socket.write(CertificateKit::name(behaviour.certificate).toLatin1() + ' ' +
                 protocolName(behaviour.protocol) +
                 (behaviour.stall == Behaviour::Stall::Handshake ? " stall\n" : " go\n"));
}

bool TlsEndpoint::isEncrypted(const QSslSocket& socket)
{
    Q_UNUSED(socket) // the process passes on nothing else
    return true;
}

} // namespace updateservice
