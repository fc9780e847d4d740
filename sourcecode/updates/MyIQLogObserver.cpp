#include "MyIQLogObserver.h"

#include <QDebug>
#include <QString>

void MyIQLogObserver::onPrintLog(int level, std::string text)
{
    Q_UNUSED(level)
    // One line, whatever a server has put into it.
    qDebug().noquote() << QString::fromStdString(text).simplified();
}
