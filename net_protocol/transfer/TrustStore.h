#pragma once

#include <QSslConfiguration>
#include <string>

namespace Brivane {

/// Whom a client trusts. Reading the system's authorities takes tens of milliseconds, so it is done
/// once.
class TrustStore
{
public:
    /// TLS 1.2 or later with a verified certificate of one of the system's authorities or of those
    /// in @p extraCaFile, a PEM file; empty for none. A file without a certificate is logged, and
    /// read again the next time.
    [[nodiscard]] QSslConfiguration configuration(const std::string& extraCaFile);

private:
    std::string m_extraCaFile;
    QSslConfiguration m_configuration; ///< null until a file has been read
};

} // namespace Brivane
