#pragma once

#include <QSslConfiguration>
#include <string>

namespace Brivane {

/// The authorities that a client trusts. It reads those of the system once, because that takes tens
/// of milliseconds.
class TrustStore
{
public:
    /// TLS 1.2 or later with a verified certificate of an authority of the system or of one in
    /// @p extraCaFile, a PEM file; empty: none. A file without a certificate is logged and read
    /// again the next time.
    [[nodiscard]] QSslConfiguration configuration(const std::string& extraCaFile);

private:
    std::string m_extraCaFile;
    QSslConfiguration m_configuration; ///< null until a file has been read
};

} // namespace Brivane
