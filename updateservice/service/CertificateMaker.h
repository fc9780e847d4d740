#pragma once

#include <QString>

namespace updateservice {

/// Makes the keys and certificates of a CertificateKit.
class CertificateMaker
{
public:
    explicit CertificateMaker(QString directory)
        : m_directory(std::move(directory))
    {
    }

    /// @return false when that fails, see errorText()
    bool make();
    [[nodiscard]] const QString& errorText() const { return m_errorText; }

private:
    bool openssl(const QStringList& arguments);
    bool makeAuthority(const QString& name);
    bool makeSigned(const QString& name, const QString& authority, const QString& hosts, int days);
    [[nodiscard]] QString path(const QString& file) const
    {
        return m_directory + QLatin1Char('/') + file;
    }

    QString m_directory;
    QString m_errorText;
};

} // namespace updateservice
