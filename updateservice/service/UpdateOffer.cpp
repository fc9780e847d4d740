#include "UpdateOffer.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace updateservice {

namespace {

constexpr double kMegabyte = 1024.0 * 1024.0;

// No JSON parser: the body of a check has a comma after its last member, which JSON forbids.
QString versionIn(const QByteArray& body)
{
    static const QRegularExpression version(QStringLiteral("\"version\"\\s*:\\s*\"([^\"]*)\""));
    return version.match(QString::fromUtf8(body)).captured(1);
}

} // namespace

QByteArray UpdateOffer::answerTo(const QByteArray& body) const
{
    if (!text.isEmpty())
        return text;
    if (versionIn(body) == version)
        return upToDate();
    const QJsonObject answer{{"needUpgrade", true},
                             {"details", details},
                             {"downLoadUrl", url},
                             {"packageSize", packageSize}};
    return QJsonDocument(answer).toJson(QJsonDocument::Compact);
}

QByteArray UpdateOffer::upToDate()
{
    return QByteArrayLiteral("{\"needUpgrade\":false}");
}

QString UpdateOffer::sizeText(qint64 bytes)
{
    return QString::number(static_cast<double>(bytes) / kMegabyte, 'f', 1) + "MB";
}

} // namespace updateservice
