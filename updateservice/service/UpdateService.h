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

/// The maker's update service on the loopback interface: answers the check and hands out packages,
/// over HTTPS. It lives on one thread with an event loop. Faults take effect with the next
/// connection or request.
class UpdateService : public QTcpServer
{
    Q_OBJECT

public:
    static constexpr const char* kCheckPath = "/api/voip/v1/ec/upgrade/needVersionUpgrade";

    explicit UpdateService(const CertificateKit& certificates, QObject* parent = nullptr);
    ~UpdateService() override;

    /// @param port 0 for a free one, or, after stop(), for the one it had
    bool start(quint16 port = 0);
    /// Connections are refused from now on; those there are go on.
    void stop();

    /// Where clients connect.
    [[nodiscard]] quint16 port() const { return m_port; }
    /// "https://localhost:port", and @p path if there is one.
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
    /// The same from a file, which may change until it is asked for.
    QString addPackageFile(const QString& name, const QString& file);

    [[nodiscard]] const QList<RequestRecord>& requests() const { return m_requests; }
    void clearRequests() { m_requests.clear(); }
    /// How many have come over plain HTTP, to where "redirect http" leads.
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
    quint16 m_port = 0; ///< the clients'
};

} // namespace updateservice
