#include "Pointer.h"

#include <QProcess>
#include <QStringList>
#include <QtGlobal>
#include <QWidget>

namespace {

constexpr QPoint kParking(2, 1000);

void xdotool(const QStringList& arguments)
{
    const int status = QProcess::execute(QStringLiteral("xdotool"), arguments);
    if (status != 0)
        qFatal("xdotool %s ends with %d", qPrintable(arguments.join(QLatin1Char(' '))), status);
}

} // namespace

void Pointer::moveTo(const QPoint& position)
{
    xdotool({QStringLiteral("mousemove"), QString::number(position.x()),
             QString::number(position.y())});
}

void Pointer::press(int button)
{
    xdotool({QStringLiteral("mousedown"), QString::number(button)});
}

void Pointer::release(int button)
{
    xdotool({QStringLiteral("mouseup"), QString::number(button)});
}

void Pointer::clickAt(const QPoint& position, int button)
{
    moveTo(position);
    press(button);
    release(button);
}

void Pointer::park()
{
    moveTo(kParking);
}

QPoint Pointer::middleOf(const QWidget& widget)
{
    return widget.mapToGlobal(widget.rect().center());
}
