#pragma once

#include <QProcess>
#include <QString>

/// The update service in its own process, with one package of zeros.
class PackageService
{
public:
    /// Keeps package and certificates in @p directory. When the service does not start, it ends the
    /// calling process.
    PackageService(const QString& directory, qint64 packageBytes);
    ~PackageService();
    PackageService(const PackageService&) = delete;
    PackageService& operator=(const PackageService&) = delete;

    [[nodiscard]] QString url() const;
    [[nodiscard]] QString authorityFile() const { return m_directory + "/authority.pem"; }

private:
    QString m_directory;
    QString m_port;
    QProcess m_process;
};
