#include "TestInstaller.h"

QString TestInstaller::name()
{
    return QStringLiteral("setup 1.bat");
}

QByteArray TestInstaller::content()
{
    return "@echo off\r\n>\"%~f0.started\" echo arguments[%*]\r\n";
}

QByteArray TestInstaller::startedWithoutArguments()
{
    return "arguments[]\r\n";
}
