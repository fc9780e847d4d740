#include "CertificateMaker.h"

#include <QDir>
#include <QFile>

namespace updateservice {

/// The process that speaks TLS has made them, see TlsEndpoint.
bool CertificateMaker::make()
{
    const QDir made(qEnvironmentVariable("MARVIK_TLS_CERTIFICATES"));
    const QStringList files = made.entryList(QDir::Files);
    for (const QString& file : files) {
        if (!QFile::copy(made.filePath(file), path(file))) {
            m_errorText = "cannot copy " + made.filePath(file);
            return false;
        }
    }
    if (!files.isEmpty())
        return true;
    m_errorText = "no certificates in " + made.path();
    return false;
}

} // namespace updateservice
