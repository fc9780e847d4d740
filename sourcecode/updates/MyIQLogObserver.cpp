#include "MyIQLogObserver.h"

#include "transfer/Log.h"

#include <QString>

void MyIQLogObserver::onPrintLog(int level, std::string text)
{
    Q_UNUSED(level)
    // The text may quote a server, which must not be able to insert line feeds into the log.
    qCDebug(Brivane::netLog).noquote() << QString::fromStdString(text).simplified();
}
