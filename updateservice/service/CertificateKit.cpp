#include "CertificateKit.h"

#include "CertificateMaker.h"

#include <QDir>
#include <QFile>

namespace updateservice {

namespace {

bool writeFile(const QString& path, const QByteArray& text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

} // namespace

bool CertificateKit::make(const QString& directory)
{
    m_directory = QDir(directory).absolutePath();
    if (QFile::exists(path("complete")))
        return true;
    CertificateMaker maker(m_directory);
    if (maker.make())
        return writeFile(path("complete"), {});
    m_errorText = maker.errorText();
    return false;
}

QString CertificateKit::name(Behaviour::Certificate kind)
{
    switch (kind) {
    case Behaviour::Certificate::SelfSigned:
        return QStringLiteral("selfsigned");
    case Behaviour::Certificate::WrongHost:
        return QStringLiteral("wronghost");
    case Behaviour::Certificate::Expired:
        return QStringLiteral("expired");
    case Behaviour::Certificate::Unknown:
        return QStringLiteral("unknown");
    default:
        return QStringLiteral("trusted");
    }
}

QString CertificateKit::authorityFile() const
{
    return path("authority.pem");
}

CertificateKit::Identity CertificateKit::identity(Behaviour::Certificate kind) const
{
    Identity identity;
    QFile certificate(path(name(kind) + ".pem"));
    if (certificate.open(QIODevice::ReadOnly))
        identity.certificate = QSslCertificate(&certificate);
    QFile key(path(name(kind) + ".key"));
    if (key.open(QIODevice::ReadOnly))
        identity.key = QSslKey(&key, QSsl::Ec);
    return identity;
}

bool CertificateKit::allowOldProtocols(const QString& directory)
{
    const QString file = QDir(directory).absoluteFilePath("openssl.cnf");
    return writeFile(file, "openssl_conf = all\n"
                           "[all]\nssl_conf = ssl\n"
                           "[ssl]\nsystem_default = system\n"
                           "[system]\nMinProtocol = TLSv1\nCipherString = ALL:@SECLEVEL=0\n") &&
           qputenv("OPENSSL_CONF", QFile::encodeName(file));
}

QString CertificateKit::path(const QString& file) const
{
    return m_directory + QLatin1Char('/') + file;
}

} // namespace updateservice
