#include "shell/Desktop.h"
#include "shell/HighDpi.h"
#include "shell/QtSingleApplication.h"
#include "shell/SorvantaHome.h"
#include "shell/TerminationRequest.h"

#include "devices/DeviceManager.h"
#include "logging/LogFile.h"

#include <QStandardPaths>
#include <QTextCodec>

int main(int argc, char** argv)
{
    Desktop::chooseWindowSystem();
    if (HighDpi::wantsScaling(Desktop::monitorWidth()))
        HighDpi::enableScaling();

    QtSingleApplication application(argc, argv, true);
    if (application.isRunning()) {
        application.sendMessage(QStringLiteral("raise_window_noop"), 5000);
        return 0;
    }
    const LogFile log(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation));
    Desktop::setFontSubstitutes();

    SorvantaHome home;
    application.setActivationWindow(&home, true);
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("utf-8"));
    home.setWindowTitle(QStringLiteral("MarvikTools"));
    home.show();

    DeviceManager& devices = DeviceManager::instance();
    devices.start();
    QObject::connect(&application, &QtSingleApplication::messageReceived, &home,
                     &SorvantaHome::slotActivateWindow);
    const TerminationRequest termination;
    QObject::connect(&termination, &TerminationRequest::requested, &application,
                     &QCoreApplication::quit);
    const int status = QtSingleApplication::exec();
    devices.stop(); // no notification may reach a window that is going away
    // Nobody who starts the program now is shown a window that is on its way out.
    application.setActivationWindow(nullptr);
    QObject::disconnect(&application, nullptr, &home, nullptr);
    home.finishTransfer();
    return status;
}
