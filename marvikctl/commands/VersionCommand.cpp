#include "VersionCommand.h"

void VersionCommand::run(const Invocation& invocation, Report& report)
{
    static_cast<void>(invocation);
    const QString version = QCoreApplication::applicationVersion();
    report.set(QStringLiteral("version"), version);
    report.setText(QStringLiteral("marvikctl %1\n").arg(version));
}
