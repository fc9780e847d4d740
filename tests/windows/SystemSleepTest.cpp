#include "PendingTimers.h"
#include "RecordingCaptureGraph.h"
#include "ScriptedVideo.h"
#include "ShownHome.h"

#include <memory>
#include <qt_windows.h>
#include <QtTest>

namespace {

constexpr int kReturnMs = 2000;

} // namespace

/// The preview while the computer sleeps.
class SystemSleepTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void pictureEndsBeforeTheSleepAndStartsAgain();
    void stoppedPictureStaysStopped();
    void pictureOfAHiddenWindowStaysStopped();
    void otherPowerEventsChangeNothing();

private:
    void send(WPARAM event) const
    {
        ::SendMessageW(reinterpret_cast<HWND>(m_home->window().winId()), WM_POWERBROADCAST, event,
                       0);
    }
    QStringList takeSteps() const { return m_home->cameras().video().script()->takeSteps(); }

    std::unique_ptr<ShownHome> m_home;
};

void SystemSleepTest::init()
{
    m_home = std::make_unique<ShownHome>(1);
    QVERIFY(m_home->isPlaced());
    QVERIFY(m_home->passStart());
    QVERIFY(m_home->openSettings());
    QVERIFY(takeSteps().contains(QStringLiteral("run")));
}

void SystemSleepTest::cleanup()
{
    m_home.reset();
}

void SystemSleepTest::pictureEndsBeforeTheSleepAndStartsAgain()
{
    for (int sleep = 0; sleep < 2; ++sleep) {
        send(PBT_APMSUSPEND);
        QVERIFY(takeSteps().contains(QStringLiteral("release")));
        send(PBT_APMSUSPEND); // to another window
        QCOMPARE(takeSteps(), QStringList());
        send(PBT_APMRESUMEAUTOMATIC);
        send(PBT_APMRESUMESUSPEND);
        send(PBT_APMRESUMEAUTOMATIC);
        QCOMPARE(takeSteps(), QStringList()); // the camera is not back yet
        QVERIFY(PendingTimers::fire(kReturnMs));
        QCOMPARE(takeSteps().filter(QStringLiteral("run")), QStringList("run"));
    }
}

void SystemSleepTest::stoppedPictureStaysStopped()
{
    m_home->window().slotHandleCapture();
    send(PBT_APMSUSPEND);
    send(PBT_APMRESUMEAUTOMATIC);
    takeSteps();
    QVERIFY(PendingTimers::fire(kReturnMs));
    QVERIFY(!takeSteps().contains(QStringLiteral("run")));
}

void SystemSleepTest::pictureOfAHiddenWindowStaysStopped()
{
    send(PBT_APMSUSPEND);
    m_home->closeToTray();
    takeSteps();
    send(PBT_APMRESUMEAUTOMATIC);
    QVERIFY(PendingTimers::fire(kReturnMs));
    QVERIFY(!takeSteps().contains(QStringLiteral("run")));
    m_home->window().slotActivateWindow();
    QTRY_VERIFY(m_home->cameras().video().script()->steps.contains(QStringLiteral("run")));
}

void SystemSleepTest::otherPowerEventsChangeNothing()
{
    send(PBT_APMPOWERSTATUSCHANGE);
    send(PBT_APMRESUMEAUTOMATIC);
    QVERIFY(!PendingTimers::fire(kReturnMs));
    QCOMPARE(takeSteps(), QStringList());
}

QTEST_MAIN(SystemSleepTest)
#include "SystemSleepTest.moc"
