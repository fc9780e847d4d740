#include "Xdotool.h"

#include <QProcess>
#include <QtGlobal>

void Xdotool::run(const QStringList& arguments)
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
