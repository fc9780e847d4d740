#include "PanelWindow.h"

#include "protocol/ControlText.h"

#include <cstdlib>
#include <QApplication>
#include <QMessageBox>
#include <QScreen>

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
                        "variable %1 names the control socket.")
                .arg(QString::fromLatin1(virtualcamera::kSocketVariable)));
        return 2;
    }
    virtualcamera::PanelWindow window(socket);
    // At the right edge and below other windows: the program that uses the cameras is in the
    // middle.
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    window.move(screen.right() - window.width(), screen.center().y() - window.height() / 2);
    window.setAttribute(Qt::WA_ShowWithoutActivating);
    window.show();
    window.lower();
    return QApplication::exec();
}
