#include "Pointer.h"

#include <QProcess>
#include <QStringList>
#include <QtGlobal>
#include <QWidget>

namespace {

constexpr QPoint kParking(2, 1000);

void xdotool(const QStringList& arguments)
{
    // Without the libraries that a test below the virtual camera is started with: a sanitizer among
    // them would judge the tool.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("LD_PRELOAD"));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral("xdotool"), arguments);
    process.waitForFinished();
    const int status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
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
