#include "UpdateCheck.h"

#include "LogCategories.h"
#include "Vendor.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonDocument>
#include <QUrl>

namespace {

constexpr const char* kCheckPath = "/api/voip/v1/ec/upgrade/needVersionUpgrade";
constexpr const char* kTypeStart = "{\"terminalType\":\"";
constexpr const char* kVersionStart = "\",\n\"version\":\"";
constexpr const char* kApplicationStart = "{\"terminalType\":\"SCW\",\n\"version\":\"";
constexpr const char* kBodyEnd = "\",\n}";

} // namespace

bool UpdateCheck::isConfigured()
{
    const QString host = QUrl(QString::fromUtf8(Vendor::updateBaseUrl())).host();
    return !host.isEmpty() && host != QLatin1String("invalid") &&
           !host.endsWith(QLatin1String(".invalid"));
}

std::string UpdateCheck::url()
{
    return std::string(Vendor::updateBaseUrl()) + kCheckPath;
}

QString UpdateCheck::caFile()
{
    QString path = QString::fromUtf8(Vendor::updateCaFile());
    if (path.isEmpty())
        return path;
    return QDir(QCoreApplication::applicationDirPath()).absoluteFilePath(path);
}

std::string UpdateCheck::body(const QString& terminalType, const QString& version)
{
    return kTypeStart + terminalType.toStdString() + kVersionStart + version.toStdString() +
           kBodyEnd;
}

std::string UpdateCheck::applicationBody(const QString& version)
{
    return kApplicationStart + version.toStdString() + kBodyEnd;
}

QJsonObject UpdateCheck::getJsonObjectFromString(const QString& answer)
{
    const QJsonDocument document = QJsonDocument::fromJson(answer.toLocal8Bit());
    if (document.isNull())
        qCDebug(updateLog) << "===> please check the string " << answer;
    QJsonObject object = document.object();
    qCDebug(updateLog) << object;
    qCDebug(updateLog) << object.value(QLatin1String("details")).toString();
    return object;
}

bool UpdateCheck::offersUpdate(const QJsonObject& answer)
{
    return answer.value(QLatin1String("needUpgrade")) != QJsonValue(false);
}
