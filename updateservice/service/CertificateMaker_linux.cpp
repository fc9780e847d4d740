#include "CertificateMaker.h"

#include <QProcess>
#include <QStandardPaths>

namespace updateservice {

namespace {

constexpr int kDays = 2;
constexpr int kYesterday = -1;
const char* const kOwnHosts = "subjectAltName=DNS:localhost,IP:127.0.0.1";
const char* const kOtherHosts = "subjectAltName=DNS:elsewhere.invalid";

} // namespace

bool CertificateMaker::make()
{
    return makeAuthority("authority") && makeAuthority("stranger") && makeAuthority("selfsigned") &&
           makeSigned("trusted", "authority", kOwnHosts, kDays) &&
           makeSigned("wronghost", "authority", kOtherHosts, kDays) &&
           makeSigned("expired", "authority", kOwnHosts, kYesterday) &&
           makeSigned("unknown", "stranger", kOwnHosts, kDays);
}

bool CertificateMaker::openssl(const QStringList& arguments)
{
    const QString program = QStandardPaths::findExecutable("openssl");
    QProcess process;
    // It takes its defaults from the system's settings, which those of allowOldProtocols() replace.
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

bool CertificateMaker::makeAuthority(const QString& name)
{
    return openssl({"req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256",
                    "-nodes", "-days", QString::number(kDays), "-subj", "/CN=localhost " + name,
                    "-addext", kOwnHosts, "-keyout", path(name + ".key"), "-out",
                    path(name + ".pem")});
}

bool CertificateMaker::makeSigned(const QString& name, const QString& authority,
                                  const QString& hosts, int days)
{
    return openssl({"req", "-new", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes",
                    "-subj", "/CN=" + name, "-addext", hosts, "-keyout", path(name + ".key"),
                    "-out", path(name + ".csr")}) &&
           openssl({"x509", "-req", "-in", path(name + ".csr"), "-CA", path(authority + ".pem"),
                    "-CAkey", path(authority + ".key"), "-CAcreateserial", "-days",
                    QString::number(days), "-copy_extensions", "copy", "-out",
                    path(name + ".pem")});
}

} // namespace updateservice
