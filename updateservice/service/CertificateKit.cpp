#include "CertificateKit.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

namespace updateservice {

namespace {

constexpr int kDays = 2;
constexpr int kYesterday = -1;
const char* const kOwnHosts = "subjectAltName=DNS:localhost,IP:127.0.0.1\n";
const char* const kOtherHosts = "subjectAltName=DNS:elsewhere.invalid\n";

bool writeFile(const QString& path, const QByteArray& text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

QString fileName(Behaviour::Certificate kind)
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

} // namespace

bool CertificateKit::make(const QString& directory)
{
    m_directory = QDir(directory).absolutePath();
    if (QFile::exists(path("complete")))
        return true;
    return makeAuthority("authority") && makeAuthority("stranger") && makeAuthority("selfsigned") &&
           makeSigned("trusted", "authority", kOwnHosts, kDays) &&
           makeSigned("wronghost", "authority", kOtherHosts, kDays) &&
           makeSigned("expired", "authority", kOwnHosts, kYesterday) &&
           makeSigned("unknown", "stranger", kOwnHosts, kDays) && writeFile(path("complete"), {});
}

QString CertificateKit::authorityFile() const
{
    return path("authority.pem");
}

CertificateKit::Identity CertificateKit::identity(Behaviour::Certificate kind) const
{
    Identity identity;
    QFile certificate(path(fileName(kind) + ".pem"));
    if (certificate.open(QIODevice::ReadOnly))
        identity.certificate = QSslCertificate(&certificate);
    QFile key(path(fileName(kind) + ".key"));
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

bool CertificateKit::openssl(const QStringList& arguments)
{
    const QString program = QStandardPaths::findExecutable("openssl");
    QProcess process;
    // Its defaults for requests are in the system's settings, not in those of allowOldProtocols().
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("OPENSSL_CONF");
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    if (!program.isEmpty() && process.waitForFinished() &&
        process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
        return true;
    m_errorText = "openssl " + arguments.join(QLatin1Char(' ')) + ": " +
                  QString::fromLocal8Bit(process.readAllStandardError());
    return false;
}

bool CertificateKit::makeAuthority(const QString& name)
{
    return openssl({"req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256",
                    "-nodes", "-days", QString::number(kDays), "-subj", "/CN=localhost " + name,
                    "-addext", "subjectAltName=DNS:localhost,IP:127.0.0.1", "-keyout",
                    path(name + ".key"), "-out", path(name + ".pem")});
}

bool CertificateKit::makeSigned(const QString& name, const QString& authority, const QString& hosts,
                                int days)
{
    return writeFile(path(name + ".ext"), hosts.toLatin1()) &&
           openssl({"req", "-new", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes",
                    "-subj", "/CN=" + name, "-keyout", path(name + ".key"), "-out",
                    path(name + ".csr")}) &&
           openssl({"x509", "-req", "-in", path(name + ".csr"), "-CA", path(authority + ".pem"),
                    "-CAkey", path(authority + ".key"), "-CAcreateserial", "-days",
                    QString::number(days), "-extfile", path(name + ".ext"), "-out",
                    path(name + ".pem")});
}

QString CertificateKit::path(const QString& file) const
{
    return m_directory + QLatin1Char('/') + file;
}

} // namespace updateservice
