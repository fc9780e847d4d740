#include "JsonLines.h"

#include <QRegularExpression>

int JsonLines::at(const QByteArray& text, int position)
{
    return 1 + text.left(position).count('\n');
}

int JsonLines::ofKey(const QByteArray& text, const QString& key)
{
    // A key may be written with escapes; such a one is not found.
    const QRegularExpression member(
        QStringLiteral("\"%1\"\\s*:").arg(QRegularExpression::escape(key)));
    const QString all = QString::fromUtf8(text);
    const QRegularExpressionMatch match = member.match(all);
    if (!match.hasMatch())
        return 1;
    return 1 + all.leftRef(match.capturedStart()).count(QLatin1Char('\n'));
}
