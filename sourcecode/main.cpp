#include "shell/FontSubstitutes.h"
#include "shell/HighDpi.h"
#include "shell/NoDisplayExit.h"
#include "shell/ProgramMutex.h"
#include "shell/QtSingleApplication.h"
#include "shell/SorvantaHome.h"
#include "shell/TerminationRequest.h"
#include "shell/WindowSystem.h"
#include "shell/WindowSystemChoice.h"

#include "devices/DeviceManager.h"
#include "LogCategories.h"
#include "logging/LogFile.h"

#include <memory>
#include <QStandardPaths>
#include <QTextCodec>

int main(int argc, char** argv)
{
    const ProgramMutex mutex;
    auto windowSystem = std::make_unique<WindowSystemChoice>();
    if (HighDpi::wantsScaling(WindowSystem::monitorWidth()))
        HighDpi::enableScaling();

    auto noDisplay = std::make_unique<NoDisplayExit>();
    QtSingleApplication application(argc, argv, true);
    noDisplay.reset();
    if (application.isRunning()) {
        application.sendMessage(QStringLiteral("raise_window_noop"), 5000);
        return 0;
    }
    const LogFile log(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation));
    // Not earlier: the file of the log belongs to the running instance.
    if (!application.lockProblem().isEmpty())
        qCWarning(shellLog).noquote()
            << "A second start of the program is not noticed," << application.lockProblem();
    FontSubstitutes::install();

    SorvantaHome home;
    application.setActivationWindow(&home, true);
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("utf-8"));
    home.setWindowTitle(QStringLiteral("MarvikTools"));
    home.show();
    windowSystem.reset();

    DeviceManager& devices = DeviceManager::instance();
    devices.start();
    QObject::connect(&application, &QtSingleApplication::messageReceived, &home,
                     &SorvantaHome::slotActivateWindow);
    const TerminationRequest termination;
    QObject::connect(&termination, &TerminationRequest::requested, &application,
                     &QCoreApplication::quit);
    const int status = QtSingleApplication::exec();
    devices.stop(); // a window that is being destroyed must not be notified
    // A second start from here on must not show this window again.
    application.setActivationWindow(nullptr);
    QObject::disconnect(&application, nullptr, &home, nullptr);
    home.finishTransfer();
    return status;
}
