#include "KnownImages.h"

#include "WholeFile.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>

namespace {

QString keyOf(const QByteArray& image)
{
    return QString::fromLatin1(QCryptographicHash::hash(image, QCryptographicHash::Sha256).toHex());
}

QJsonObject read(const QString& file)
{
    const auto text = WholeFile::read(file);
    return text ? QJsonDocument::fromJson(*text).object() : QJsonObject();
}

} // namespace

KnownImages KnownImages::ofThisUser()
{
    return KnownImages(QStandardPaths::writableLocation(QStandardPaths::CacheLocation) +
                       QStringLiteral("/firmware-versions.json"));
}

QString KnownImages::versionOf(const QByteArray& image) const
{
    return read(m_file).value(keyOf(image)).toString();
}

void KnownImages::note(const QByteArray& image, const QString& version) const
{
    QJsonObject known = read(m_file);
    known.insert(keyOf(image), version);
    static_cast<void>(WholeFile::write(m_file, QJsonDocument(known).toJson()));
}
