#pragma once

#include <QByteArray>
#include <QString>

/// Which version an image turned out to be. An image does not tell its version; the first camera
/// that was updated with it did, so a second one that has this version already need not be written.
class KnownImages
{
public:
    explicit KnownImages(QString file)
        : m_file(std::move(file))
    {
    }
    /// In the cache of this user.
    [[nodiscard]] static KnownImages ofThisUser();

    /// Empty when it is not known.
    [[nodiscard]] QString versionOf(const QByteArray& image) const;
    /// Without effect when the file cannot be written: the next camera is written then.
    void note(const QByteArray& image, const QString& version) const;

private:
    QString m_file;
};
