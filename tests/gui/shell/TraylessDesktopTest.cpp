#include "ScriptedCameras.h"
#include "SorvantaHome.h"

#include <QApplication>
#include <QPushButton>
#include <QSignalSpy>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QtTest>

/// The main window on a desktop that has no tray.
class TraylessDesktopTest : public QObject
{
    Q_OBJECT

private slots:
    void closingEndsTheProgram();
    void quitOfTheMenuEndsTheProgram();

private:
    /// Runs the program until @p close has closed its window.
    template <typename Close>
    static int runUntilClosed(SorvantaHome& home, Close close)
    {
        QTimer::singleShot(0, &home, close);
        QTimer rescue;
        connect(&rescue, &QTimer::timeout, qApp, [] { QCoreApplication::exit(1); });
        rescue.start(5000);
        return QApplication::exec();
    }
};

void TraylessDesktopTest::closingEndsTheProgram()
{
    QVERIFY(!QSystemTrayIcon::isSystemTrayAvailable());
    const ScriptedCameras cameras;
    SorvantaHome home;
    home.show();
    QVERIFY(QTest::qWaitForWindowExposed(&home));
    auto* button = home.findChild<QPushButton*>(QStringLiteral("closeBtn"));
    QCOMPARE(runUntilClosed(home, [button] { QTest::mouseClick(button, Qt::LeftButton); }), 0);
    QVERIFY(!home.isVisible());
}

void TraylessDesktopTest::quitOfTheMenuEndsTheProgram()
{
    const ScriptedCameras cameras;
    SorvantaHome home;
    home.show();
    QVERIFY(QTest::qWaitForWindowExposed(&home));
    home.slotShowMoreMenu();
    auto* button = home.findChild<QPushButton*>(QStringLiteral("btnQuit"));
    QCOMPARE(runUntilClosed(home, [button] { QTest::mouseClick(button, Qt::LeftButton); }), 0);
}

QTEST_MAIN(TraylessDesktopTest)
#include "TraylessDesktopTest.moc"
