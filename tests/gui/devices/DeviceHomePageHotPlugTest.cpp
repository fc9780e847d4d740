#include "CameraHandle.h"
#include "LogCapture.h"
#include "ShownList.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QSignalSpy>
#include <QtTest>
#include <thread>
#include <utility>

namespace {

/// Handles an event as the watcher's thread does.
void notify(int status)
{
    std::thread([status] { CameraHandle::instance().getCameras(status); }).join();
}

} // namespace

/// The device list when cameras come and go.
class DeviceHomePageHotPlugTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void notificationOfTheWatcherMakesOneRebuild_data();
    void notificationOfTheWatcherMakesOneRebuild();
    void notificationWaitsForTheWindowsThread();
    void eitherKindOfNotificationMakesOneRebuild_data();
    void eitherKindOfNotificationMakesOneRebuild();
    void notificationsThatWaitAreServedTogether();
    void notificationsDuringARebuildWaitForTheNext();
    void removalIsToldBeforeAnArrival();
    void rebuildTakesOnePause();
    void signalTellsBeforeAndAfter();
    void firstSignalTellsThatThereWasNothing();
    void listIsMadeAnew();
    void cameraThatComesBeforeTheStartHasOneCard();
    void unpluggingTheLastCameraShowsTheEmptyState();
    void openCameraThatIsBackIsSignalled();
    void otherChangesDoNotSignalTheOpenCamera();
    void rebuildIsLoggedInItsOrder();
    void notificationAfterThePageIsGoneReachesNobody();

private:
    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<ShownList> m_shown;
};

void DeviceHomePageHotPlugTest::initTestCase()
{
    // In the program the main window does this.
    qRegisterMetaType<QList<UVCDeviceInfo>>("QList<UVCDeviceInfo>");
    qRegisterMetaType<QMap<QString, HidDevices>>("QMap<QString,HidDevices>");
}

void DeviceHomePageHotPlugTest::init()
{
    m_log = std::make_unique<LogCapture>();
    m_shown = std::make_unique<ShownList>();
    QVERIFY(m_shown->isShown());
    CameraHandle::instance().setCurrentDevice({});
}

void DeviceHomePageHotPlugTest::cleanup()
{
    m_shown.reset();
    m_log.reset();
}

void DeviceHomePageHotPlugTest::notificationOfTheWatcherMakesOneRebuild_data()
{
    QTest::addColumn<int>("status");
    QTest::newRow("plugged in") << int(DevicePluggedIn);
    QTest::newRow("removed") << int(DeviceRemoved);
}

void DeviceHomePageHotPlugTest::notificationOfTheWatcherMakesOneRebuild()
{
    QFETCH(const int, status);
    QSignalSpy finished(&m_shown->page(), &DeviceHomePage::sigUpdateCameraListFinished);
    m_shown->cameras().plugIn(1);
    notify(status);
    QTRY_COMPARE(finished.count(), 1);
    QTest::qWait(50); // a second one would come immediately
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.first().at(4).toInt(), status);
    QCOMPARE(m_shown->page().entryCount(), 1);
    QCOMPARE(m_shown->cameras().video().listings(), 1);
    QCOMPARE(m_log->texts().count(QStringLiteral("更新home页的设备列表")), 1);
}

void DeviceHomePageHotPlugTest::notificationWaitsForTheWindowsThread()
{
    m_shown->cameras().plugIn(1);
    QElapsedTimer clock;
    clock.start();
    notify(DevicePluggedIn);
    QVERIFY(clock.elapsed() < 400); // the watcher itself does not wait
    QCOMPARE(m_shown->page().entryCount(), 0);
    QTRY_COMPARE(m_shown->page().entryCount(), 1);
}

void DeviceHomePageHotPlugTest::eitherKindOfNotificationMakesOneRebuild_data()
{
    QTest::addColumn<bool>("withHid");
    QTest::newRow("video devices") << false;
    QTest::newRow("video devices and HID interfaces") << true;
}

void DeviceHomePageHotPlugTest::eitherKindOfNotificationMakesOneRebuild()
{
    QFETCH(const bool, withHid);
    auto* notifier = m_shown->page().findChild<DeviceNotify*>();
    QVERIFY(notifier);
    QSignalSpy video(notifier, &DeviceNotify::sigCameraDeviceUpdateWithoutHid);
    QSignalSpy both(notifier, &DeviceNotify::sigCameraDeviceUpdate);
    QSignalSpy finished(&m_shown->page(), &DeviceHomePage::sigUpdateCameraListFinished);
    m_shown->cameras().plugIn(2);
    const QList<UVCDeviceInfo> cameras = ScriptedCameras::videoDevices();
    IDeviceNotify* receiver = notifier;
    if (withHid)
        receiver->camerasChanged(cameras, {}, DeviceRemoved);
    else
        receiver->camerasChanged(cameras, DeviceRemoved);
    QCOMPARE(video.count(), withHid ? 0 : 1);
    QCOMPARE(both.count(), withHid ? 1 : 0);
    QTest::qWait(50);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.first().at(4).toInt(), int(DeviceRemoved));
    QCOMPARE(m_shown->page().entryCount(), 2);
}

void DeviceHomePageHotPlugTest::notificationsThatWaitAreServedTogether()
{
    m_shown->cameras().plugIn(2);
    m_shown->update();
    QSignalSpy finished(&m_shown->page(), &DeviceHomePage::sigUpdateCameraListFinished);
    m_log->clear();
    for (int i = 0; i < 30; ++i) {
        m_shown->cameras().plugIn(1);
        notify(DeviceRemoved);
        m_shown->cameras().plugIn(2);
        notify(DevicePluggedIn);
    }
    m_shown->cameras().plugIn(1);
    notify(DeviceRemoved);
    QTRY_COMPARE(finished.count(), 2);
    QTest::qWait(50); // a further rebuild would come immediately
    QCOMPARE(finished.count(), 2);
    QCOMPARE(m_log->texts().count(QStringLiteral("更新home页的设备列表")), 1);
    QCOMPARE(m_shown->page().entryCount(), 1);
}

void DeviceHomePageHotPlugTest::notificationsDuringARebuildWaitForTheNext()
{
    QSignalSpy finished(&m_shown->page(), &DeviceHomePage::sigUpdateCameraListFinished);
    bool isFirst = true;
    connect(&m_shown->page(), &DeviceHomePage::sigUpdateCameraListFinished, this, [&] {
        if (!std::exchange(isFirst, false))
            return;
        m_shown->cameras().plugIn(3);
        notify(DevicePluggedIn);
        m_shown->cameras().plugIn(2);
        notify(DevicePluggedIn);
    });
    m_shown->cameras().plugIn(1);
    notify(DevicePluggedIn);
    QTRY_COMPARE(finished.count(), 2);
    QTest::qWait(50); // a further rebuild would come immediately
    QCOMPARE(finished.count(), 2);
    QCOMPARE(m_shown->page().entryCount(), 2);
}

void DeviceHomePageHotPlugTest::removalIsToldBeforeAnArrival()
{
    m_shown->cameras().plugIn(1);
    m_shown->update();
    QSignalSpy finished(&m_shown->page(), &DeviceHomePage::sigUpdateCameraListFinished);
    const QStringList first{ScriptedCameras::hidPath(0)};
    const QStringList second{ScriptedCameras::hidPath(1)};
    m_shown->cameras().plugInOnly(1);
    notify(DevicePluggedIn);
    notify(DeviceRemoved);
    QTRY_COMPARE(finished.count(), 2);

    const auto interfaces = [&finished](int signal, int argument) {
        return finished.at(signal).at(argument).value<HidDeviceMap>().keys();
    };
    QCOMPARE(finished.at(0).at(4).toInt(), int(DeviceRemoved));
    QCOMPARE(interfaces(0, 3), first);
    QCOMPARE(interfaces(0, 2), QStringList());
    QCOMPARE(finished.at(1).at(4).toInt(), int(DevicePluggedIn));
    QCOMPARE(interfaces(1, 3), QStringList());
    QCOMPARE(interfaces(1, 2), second);
}

void DeviceHomePageHotPlugTest::rebuildTakesOnePause()
{
    m_shown->cameras().plugIn(4);
    QElapsedTimer clock;
    clock.start();
    m_shown->update();
    QVERIFY2(clock.elapsed() >= 500, qPrintable(QString::number(clock.elapsed())));
    QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(m_shown->page().entryCount(), 4);
}

void DeviceHomePageHotPlugTest::signalTellsBeforeAndAfter()
{
    m_shown->cameras().plugIn(1);
    m_shown->update();
    const QList<UVCDeviceInfo> before = ScriptedCameras::videoDevices();
    m_shown->cameras().plugIn(2);
    const QList<UVCDeviceInfo> after = ScriptedCameras::videoDevices();
    QSignalSpy finished(&m_shown->page(), &DeviceHomePage::sigUpdateCameraListFinished);
    m_shown->update();
    const QList<QVariant> told = finished.first();
    QCOMPARE(told.at(0).value<QList<UVCDeviceInfo>>(), after);
    QCOMPARE(told.at(1).value<QList<UVCDeviceInfo>>(), before);
    const auto newHid = told.at(2).value<HidDeviceMap>();
    const auto oldHid = told.at(3).value<HidDeviceMap>();
    QCOMPARE(newHid.keys(),
             (QStringList{ScriptedCameras::hidPath(0), ScriptedCameras::hidPath(1)}));
    QCOMPARE(oldHid.keys(), QStringList{ScriptedCameras::hidPath(0)});
    QCOMPARE(told.at(4).toInt(), int(DevicePluggedIn));
}

void DeviceHomePageHotPlugTest::firstSignalTellsThatThereWasNothing()
{
    QSignalSpy finished(&m_shown->page(), &DeviceHomePage::sigUpdateCameraListFinished);
    m_shown->cameras().plugIn(1);
    m_shown->update();
    QCOMPARE(finished.count(), 1);
    QVERIFY(finished.first().at(1).value<QList<UVCDeviceInfo>>().isEmpty());
    QVERIFY(finished.first().at(3).value<HidDeviceMap>().isEmpty());
}

void DeviceHomePageHotPlugTest::listIsMadeAnew()
{
    m_shown->cameras().plugIn(2);
    m_shown->update();
    const QPointer<SvtaDeviceWidget> first = m_shown->cards().at(0);
    m_shown->cameras().refuse(0);
    m_shown->cameras().plugIn(1);
    m_shown->update(DeviceRemoved);
    QTRY_VERIFY(first.isNull());
    QCOMPARE(m_shown->pairs(), QStringList{ShownList::pair(0, 0)});
    QCOMPARE(int(m_shown->cards().at(0)->data().status), 0);
    QCOMPARE(m_shown->records().size(), 2);
    QCOMPARE(m_shown->records().last().keys(), QStringList{ScriptedCameras::videoPath(0)});
}

/// The watch for cameras begins before the start animation ends.
void DeviceHomePageHotPlugTest::cameraThatComesBeforeTheStartHasOneCard()
{
    m_shown->cameras().plugIn(2);
    notify(DevicePluggedIn);
    QTRY_COMPARE(m_shown->page().entryCount(), 2);
    m_shown->page().start();
    QCOMPARE(m_shown->page().entryCount(), 2);
}

void DeviceHomePageHotPlugTest::unpluggingTheLastCameraShowsTheEmptyState()
{
    const auto* empty = m_shown->page().findChild<QWidget*>(QStringLiteral("noDeviceWidget"));
    m_shown->cameras().plugIn(1);
    m_shown->update();
    QVERIFY(!empty->isVisible());
    QVERIFY(m_shown->list().isVisible());
    m_shown->cameras().plugIn(0);
    m_shown->update(DeviceRemoved);
    QVERIFY(empty->isVisible());
    QVERIFY(!m_shown->list().isVisible());
}

void DeviceHomePageHotPlugTest::openCameraThatIsBackIsSignalled()
{
    DeviceWidgetInfo open;
    open.hidPath = ScriptedCameras::hidPath(0);
    CameraHandle::instance().setCurrentDevice(open);
    QSignalSpy back(&m_shown->page(), &DeviceHomePage::sigInitCamera);
    m_shown->cameras().plugIn(1);
    m_shown->update();
    QCOMPARE(back.count(), 1);
    m_shown->update();
    QCOMPARE(back.count(), 1);
}

void DeviceHomePageHotPlugTest::otherChangesDoNotSignalTheOpenCamera()
{
    DeviceWidgetInfo open;
    open.hidPath = ScriptedCameras::hidPath(3);
    CameraHandle::instance().setCurrentDevice(open);
    QSignalSpy back(&m_shown->page(), &DeviceHomePage::sigInitCamera);
    m_shown->cameras().plugIn(2);
    m_shown->update();
    QCOMPARE(back.count(), 0);
}

void DeviceHomePageHotPlugTest::rebuildIsLoggedInItsOrder()
{
    m_log->clear();
    m_shown->update();
    const QStringList said = m_log->texts();
    const int first =
        said.indexOf(QStringLiteral("将新获取的设备添加到设备列表，发送更新设备事件"));
    const int before = said.indexOf(QStringLiteral("before getHidCamerasAndAddToList"));
    const int built = said.indexOf(QStringLiteral("更新home页的设备列表"));
    const int after = said.indexOf(QStringLiteral("after getHidCamerasAndAddToList"));
    QVERIFY(first >= 0 && first < before && before < built && built < after);
}

void DeviceHomePageHotPlugTest::notificationAfterThePageIsGoneReachesNobody()
{
    m_shown.reset();
    const std::unique_ptr<ScriptedCameras> cameras = std::make_unique<ScriptedCameras>(1);
    notify(DevicePluggedIn);
    QTest::qWait(20);
    QCOMPARE(cameras->video().listings(), 1);
}

QTEST_MAIN(DeviceHomePageHotPlugTest)
#include "DeviceHomePageHotPlugTest.moc"
