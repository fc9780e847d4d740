#include "ProfileDocument.h"

#include "JsonLines.h"

#include <QJsonDocument>

Result<QJsonObject> ProfileDocument::parse(const QByteArray& text, const QString& name)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (!document.isObject())
        return refusal(name, JsonLines::at(text, error.offset),
                       document.isNull() ? error.errorString() : tr("this is no JSON object"));
    QJsonObject root = document.object();
    if (root.value(schemaKey()) != QJsonValue(kSchema))
        return refusal(name, JsonLines::ofKey(text, schemaKey()),
                       tr("the schema is not %1").arg(kSchema));
    return root;
}

Failure ProfileDocument::refusal(const QString& name, int line, const QString& why,
                                 const QString& hint)
{
    return {Failure::Kind::Usage, QStringLiteral("%1:%2: %3").arg(name).arg(line).arg(why), hint};
}
