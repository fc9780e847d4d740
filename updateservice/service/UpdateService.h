#pragma once

#include "Behaviour.h"
#include "CertificateKit.h"
#include "Reply.h"
#include "RequestRecord.h"
#include "TlsEndpoint.h"
#include "UpdateOffer.h"

#include <QHash>
#include <QList>
#include <QTcpServer>
#include <QUrl>

namespace updateservice {

/// The maker's update service on the loopback interface: answers checks and serves packages over
/// HTTPS. It is used on one thread, which needs an event loop. Faults apply from the next
/// connection or request on.
class UpdateService : public QTcpServer
{
    Q_OBJECT

public:
    static constexpr const char* kCheckPath = "/api/voip/v1/ec/upgrade/needVersionUpgrade";

    explicit UpdateService(const CertificateKit& certificates, QObject* parent = nullptr);
    ~UpdateService() override;

    /// @param port 0: a free one or, after stop(), the same as before
    bool start(quint16 port = 0);
    /// From now on new connections are refused; open ones stay open.
    void stop();

    /// The port for clients.
    [[nodiscard]] quint16 port() const { return m_port; }
    /// "https://localhost:port" followed by @p path.
    [[nodiscard]] QString address(const QString& path = {}) const;
    [[nodiscard]] const CertificateKit& certificates() const { return m_certificates; }

    [[nodiscard]] const Behaviour& behaviour() const { return m_behaviour; }
    void setBehaviour(const Behaviour& behaviour) { m_behaviour = behaviour; }
    /// Adds a fault, see Behaviour::apply().
    bool fault(const QString& line);

    [[nodiscard]] const UpdateOffer& offer() const { return m_offer; }
    void setOffer(const UpdateOffer& offer) { m_offer = offer; }
    /// Serves @p content as "/packages/name".
    /// @return its address
    QString addPackage(const QString& name, const QByteArray& content);
    /// The same with the content of a file, which is read at each request.
    QString addPackageFile(const QString& name, const QString& file);

    [[nodiscard]] const QList<RequestRecord>& requests() const { return m_requests; }
    void clearRequests() { m_requests.clear(); }
    /// How many connections the port for plain HTTP got, which is the target of "redirect http".
    [[nodiscard]] int insecureConnections() const { return m_insecureConnections; }

    /// Records the request and answers it.
    [[nodiscard]] Reply replyTo(const RequestRecord& request);

protected:
    void incomingConnection(qintptr descriptor) override;

private slots:
    void onInsecureConnection();

private:
    struct Package
    {
        QByteArray content;
        QString file; ///< instead of the content
    };

    [[nodiscard]] bool redirects(const QUrl& url, Reply& reply) const;
    [[nodiscard]] std::unique_ptr<QIODevice> package(const QString& path) const;
    void fillCheck(const RequestRecord& request, Reply& reply) const;

    CertificateKit m_certificates;
    Behaviour m_behaviour;
    UpdateOffer m_offer;
    QHash<QString, Package> m_packages;
    QList<RequestRecord> m_requests;
    QTcpServer m_insecure;
    int m_insecureConnections = 0;
    TlsEndpoint m_endpoint;
    quint16 m_port = 0; ///< for clients
};

} // namespace updateservice
