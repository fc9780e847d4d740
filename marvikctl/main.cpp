#include "Console.h"
#include "Program.h"

#include <QCoreApplication>
#include <QTextCodec>

int main(int argc, char** argv)
{
    const Console::Session console;
    QCoreApplication application(argc, argv);
    // The folders of the window's program: both read and write the same saved settings.
    QCoreApplication::setApplicationName(QStringLiteral("MarvikTools"));
    QCoreApplication::setApplicationVersion(QStringLiteral(MARVIK_VERSION));
    // Serial numbers are read as the window reads them, whatever the locale of a service is.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("utf-8"));
    return Program::run(QCoreApplication::arguments());
}
