#include "OnScreen.h"

#include <QProcess>
#include <QRegularExpression>
#include <QWidget>

namespace {

QString answerOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return QString::fromLatin1(process.readAllStandardOutput());
}

} // namespace

QRect OnScreen::placeOf(const QWidget& window)
{
    const QString answer =
        answerOf(QStringLiteral("xwininfo"),
                 {QStringLiteral("-id"), QString::number(window.effectiveWinId())});
    const auto number = [&answer](const char* label) {
        const QRegularExpression line(QLatin1String(label) + QStringLiteral(":\\s*(-?\\d+)"));
        return line.match(answer).captured(1).toInt();
    };
    return {number("Absolute upper-left X"), number("Absolute upper-left Y"), number("Width"),
            number("Height")};
}

bool OnScreen::isShown(const QWidget& window)
{
    return answerOf(QStringLiteral("xwininfo"),
                    {QStringLiteral("-id"), QString::number(window.effectiveWinId())})
        .contains(QLatin1String("Map State: IsViewable"));
}

QList<WId> OnScreen::stackingOrder()
{
    const QString answer =
        answerOf(QStringLiteral("xprop"),
                 {QStringLiteral("-root"), QStringLiteral("_NET_CLIENT_LIST_STACKING")});
    QList<WId> order;
    auto ids = QRegularExpression(QStringLiteral("0x[0-9a-f]+")).globalMatch(answer);
    while (ids.hasNext())
        order << ids.next().captured().toULongLong(nullptr, 16);
    return order;
}
