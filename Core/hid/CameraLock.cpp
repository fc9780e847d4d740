#include "CameraLock.h"

QString CameraLock::Holder::toString() const
{
    const QString name = program.isEmpty() ? QStringLiteral("another program") : program;
    return process == 0 ? name : QStringLiteral("%1 (process %2)").arg(name).arg(process);
}
