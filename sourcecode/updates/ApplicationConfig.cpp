#include "ApplicationConfig.h"

#include "LogCategories.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

QList<ApplicationConfig::VersionInfo> ApplicationConfig::read(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qCDebug(updateLog).noquote() << QStringLiteral("fail to open the file: %1, %2, %3")
                                            .arg(QString::fromLatin1(__FILE__))
                                            .arg(__LINE__)
                                            .arg(QStringLiteral("SorvantaHome::readConfigFile"));
        return {};
    }
    QJsonParseError error = {};
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError) {
        qCDebug(updateLog).noquote()
            << QStringLiteral("JsonParseError: %1").arg(error.errorString());
        return {};
    }

    const QJsonObject object = document.object();
    const QStringList keys = object.keys();
    for (const QString& key : keys)
        qCDebug(updateLog) << key;
    QList<VersionInfo> result;
    const QJsonArray entries = object.value(QLatin1String("versionInfo")).toArray();
    for (const auto& entry : entries) {
        const QJsonObject info = entry.toObject();
        result.append({info.value(QLatin1String("version")).toString(),
                       info.value(QLatin1String("hashcode")).toString()});
    }
    return result;
}
