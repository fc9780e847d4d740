#pragma once

#include <QByteArray>
#include <QString>

/// The version that a camera reported after an image was written into it. The version cannot be
/// read from the image itself. A camera that has this version already does not need the image.
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
