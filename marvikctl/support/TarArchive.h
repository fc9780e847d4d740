#pragma once

#include <QByteArray>
#include <QString>

/// A .tar.gz of a few text files.
class TarArchive
{
public:
    /// @param seconds of the files' time, since 1970
    explicit TarArchive(qint64 seconds)
        : m_seconds(seconds)
    {
    }

    /// @param name at most 99 bytes
    void add(const QByteArray& name, const QByteArray& content);
    [[nodiscard]] QByteArray compressed() const;

private:
    QByteArray m_tar;
    qint64 m_seconds;
};
