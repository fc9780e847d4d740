#pragma once

#include "Behaviour.h"

#include <QSslCertificate>
#include <QSslKey>
#include <QString>

namespace updateservice {

/// The certificates of one run: an authority, and one certificate of each kind for the service.
/// They are valid for "localhost" and 127.0.0.1 for two days.
class CertificateKit
{
public:
    struct Identity
    {
        QSslCertificate certificate;
        QSslKey key;
    };

    /// Makes the certificates in @p directory, which must exist, unless they are there.
    /// @return false when that fails, see errorText()
    bool make(const QString& directory);

    /// The authority that clients have to trust, a PEM file.
    [[nodiscard]] QString authorityFile() const;
    /// The name of a certificate's files, without their endings.
    [[nodiscard]] static QString name(Behaviour::Certificate kind);
    [[nodiscard]] Identity identity(Behaviour::Certificate kind) const;
    [[nodiscard]] const QString& errorText() const { return m_errorText; }

    /// Lets this process speak TLS 1.0 and 1.1, which the system's settings forbid, so that the
    /// service can behave like an old one. To be called before TLS is used.
    /// @return false when the settings cannot be written into @p directory
    static bool allowOldProtocols(const QString& directory);

private:
    [[nodiscard]] QString path(const QString& file) const;

    QString m_directory;
    QString m_errorText;
};

} // namespace updateservice
