#include "PlainText.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

constexpr int kIndent = 2;

bool isPlain(const QJsonValue& value)
{
    return !value.isObject() && !value.isArray();
}

QString line(int depth, const QString& text)
{
    return QString(depth * kIndent, QLatin1Char(' ')) + text + QLatin1Char('\n');
}

QString textOf(const QJsonValue& value)
{
    return value.isNull() ? QStringLiteral("-") : value.toVariant().toString();
}

} // namespace

QString PlainText::of(const QJsonValue& value, int depth)
{
    QString text;
    if (value.isObject()) {
        const QJsonObject object = value.toObject();
        for (auto member = object.begin(); member != object.end(); ++member) {
            if (isPlain(*member))
                text += line(depth, member.key() + QStringLiteral(": ") + textOf(*member));
            else
                text += line(depth, member.key() + QLatin1Char(':')) + of(*member, depth + 1);
        }
        return text;
    }
    if (value.isArray()) {
        const QJsonArray array = value.toArray();
        for (const QJsonValue& element : array) {
            if (isPlain(element))
                text += line(depth, textOf(element));
            else
                text += line(depth, QStringLiteral("-")) + of(element, depth + 1);
        }
        return text;
    }
    return line(depth, textOf(value));
}
