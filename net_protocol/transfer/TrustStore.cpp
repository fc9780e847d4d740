#include "TrustStore.h"

#include "Log.h"

#include <QFile>
#include <QSslCertificate>

namespace Brivane {

namespace {

QList<QSslCertificate> certificatesIn(const std::string& path)
{
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadOnly)) {
        log(ILogObserver::Error,
            "The file of extra authorities cannot be read: " + file.errorString().toStdString());
        return {};
    }
    QList<QSslCertificate> certificates = QSslCertificate::fromDevice(&file, QSsl::Pem);
    if (certificates.isEmpty())
        log(ILogObserver::Error, "The file of extra authorities has no certificate in it.");
    return certificates;
}

QSslConfiguration systemConfiguration()
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setProtocol(QSsl::TlsV1_2OrLater);
    configuration.setPeerVerifyMode(QSslSocket::VerifyPeer);
    return configuration;
}

} // namespace

QSslConfiguration TrustStore::configuration(const std::string& extraCaFile)
{
    if (extraCaFile.empty())
        return systemConfiguration();
    if (!m_configuration.isNull() && m_extraCaFile == extraCaFile)
        return m_configuration;
    const QList<QSslCertificate> extra = certificatesIn(extraCaFile);
    if (extra.isEmpty())
        return systemConfiguration();
    m_extraCaFile = extraCaFile;
    m_configuration = systemConfiguration();
    // A configuration with its own list does not load the system's authorities any more.
    m_configuration.setCaCertificates(QSslConfiguration::systemCaCertificates() + extra);
    return m_configuration;
}

} // namespace Brivane
