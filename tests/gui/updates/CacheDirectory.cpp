#include "CacheDirectory.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

QString CacheDirectory::path() const
{
    return QStandardPaths::standardLocations(QStandardPaths::CacheLocation).constFirst();
}

QString CacheDirectory::filePath(const QString& name) const
{
    return path() + QLatin1Char('/') + name;
}

QStringList CacheDirectory::files() const
{
    return QDir(path()).entryList(QDir::Files | QDir::Hidden);
}

QByteArray CacheDirectory::contentOf(const QString& name) const
{
    QFile file(filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool CacheDirectory::put(const QString& name, const QByteArray& content) const
{
    QFile file(filePath(name));
    return QDir().mkpath(path()) && file.open(QIODevice::WriteOnly) &&
           file.write(content) == content.size();
}
