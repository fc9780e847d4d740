#pragma once

#include "Behaviour.h"

#include <memory>
#include <QTcpServer>

class QSslSocket;

namespace updateservice {

class CertificateKit;

/// Where the clients of a service connect, and what turns their connections into TLS.
class TlsEndpoint
{
public:
    TlsEndpoint();
    ~TlsEndpoint();
    TlsEndpoint(const TlsEndpoint&) = delete;
    TlsEndpoint& operator=(const TlsEndpoint&) = delete;

    /// Lets @p server listen, reached by clients at a port of the loopback interface.
    /// @param port the wanted one, 0 for a free one
    /// @return the clients' port; 0 when it cannot be had
    [[nodiscard]] quint16 open(QTcpServer& server, quint16 port);
    /// Connections are refused when this returns; those there are go on.
    void close(QTcpServer& server);

    /// Begins the handshake that @p behaviour asks for on a connection that @p server accepted.
    static void begin(QSslSocket& socket, const CertificateKit& certificates,
                      const Behaviour& behaviour);
    /// Whether what the socket reads is what a client has encrypted.
    [[nodiscard]] static bool isEncrypted(const QSslSocket& socket);

private:
    class Front;

    std::unique_ptr<Front> m_front; ///< on platforms where another process does it
};

} // namespace updateservice
