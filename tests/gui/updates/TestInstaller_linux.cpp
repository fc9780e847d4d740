#include "TestInstaller.h"

QString TestInstaller::name()
{
    return QStringLiteral("setup 1.sh");
}

QByteArray TestInstaller::content()
{
    return "#!/bin/sh\necho \"$#\" > \"$0.started\"\n";
}

QByteArray TestInstaller::startedWithoutArguments()
{
    return "0\n";
}
