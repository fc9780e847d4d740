#include "Pointer.h"

#include <QProcess>
#include <QStringList>
#include <QtGlobal>

namespace {

void xdotool(const QStringList& arguments)
{
    // Without the preloaded libraries of a test that virtualcamera starts: a sanitizer among them
    // would check this tool.
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
