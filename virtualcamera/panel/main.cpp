#include "PanelWindow.h"

#include "protocol/ControlText.h"

#include <cstdlib>
#include <QApplication>
#include <QMessageBox>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    const char* fromEnvironment = std::getenv(virtualcamera::kSocketVariable);
    const std::string socket = arguments.size() > 1 ? arguments[1].toStdString()
                               : fromEnvironment    ? fromEnvironment
                                                    : "";
    if (socket.empty()) {
        QMessageBox::critical(
            nullptr, QObject::tr("Virtual cameras"),
            QObject::tr("Usage: virtualcamera-panel SOCKET\n\nWithout an argument the environment "
                        "variable %1 names the control socket of the bench.")
                .arg(QString::fromLatin1(virtualcamera::kSocketVariable)));
        return 2;
    }
    virtualcamera::PanelWindow window(socket);
    window.show();
    return QApplication::exec();
}
