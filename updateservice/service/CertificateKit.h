#pragma once

#include "Behaviour.h"

#include <QSslCertificate>
#include <QSslKey>
#include <QString>

namespace updateservice {

/// Certificates made for one run: an authority and what the service shows, in every kind. They are
/// good for "localhost" and 127.0.0.1 for two days.
class CertificateKit
{
public:
    struct Identity
    {
        QSslCertificate certificate;
        QSslKey key;
    };

    /// Makes what is not yet in @p directory, which has to exist.
    /// @return false, see errorText(), when that fails
    bool make(const QString& directory);

    /// The authority to trust, a PEM file.
    [[nodiscard]] QString authorityFile() const;
    /// What a certificate's files are called.
    [[nodiscard]] static QString name(Behaviour::Certificate kind);
    [[nodiscard]] Identity identity(Behaviour::Certificate kind) const;
    [[nodiscard]] const QString& errorText() const { return m_errorText; }

    /// Lets this process speak TLS 1.0 and 1.1, which the system's settings forbid, so that a
    /// service of that age can be shown. To be called before anything uses TLS.
    /// @return false when the settings could not be written into @p directory
    static bool allowOldProtocols(const QString& directory);

private:
    [[nodiscard]] QString path(const QString& file) const;

    QString m_directory;
    QString m_errorText;
};

} // namespace updateservice
