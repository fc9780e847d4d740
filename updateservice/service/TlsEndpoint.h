#pragma once

#include "Behaviour.h"

#include <memory>
#include <QTcpServer>

class QSslSocket;

namespace updateservice {

class CertificateKit;

/// The port to which the clients of a service connect, and the TLS side of their connections.
class TlsEndpoint
{
public:
    TlsEndpoint();
    ~TlsEndpoint();
    TlsEndpoint(const TlsEndpoint&) = delete;
    TlsEndpoint& operator=(const TlsEndpoint&) = delete;

    /// Lets @p server listen for clients at a port of the loopback interface.
    /// @param port the port for the clients, 0 for a free one
    /// @return the port for the clients; 0 when that port is not available
    [[nodiscard]] quint16 open(QTcpServer& server, quint16 port);
    /// When this returns, new connections are refused; open ones stay open.
    void close(QTcpServer& server);

    /// Begins the handshake that @p behaviour asks for on a connection that @p server accepted.
    static void begin(QSslSocket& socket, const CertificateKit& certificates,
                      const Behaviour& behaviour);
    /// Whether data of the socket comes from a client over TLS.
    [[nodiscard]] static bool isEncrypted(const QSslSocket& socket);

private:
    class Front;

    std::unique_ptr<Front> m_front; ///< on platforms where another process speaks TLS
};

} // namespace updateservice
