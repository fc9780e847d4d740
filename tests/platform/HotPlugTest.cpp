#include "DeviceManager.h"
#include "HotPlugReceiver.h"
#include "LogCapture.h"
#include "LostUevents.h"
#include "PluggedCamera.h"
#include "ProcessUsage.h"

#include <memory>
#include <QElapsedTimer>
#include <QtTest>

namespace {

constexpr int kTimeoutMs = 20000;
constexpr const char* kArrivalText = "检测到插入设备";
constexpr const char* kRemovalText = "检测到拔出设备";

int linesWith(const LogCapture& log, const char* text)
{
    return log.texts().filter(QString::fromUtf8(text)).size();
}

/// The hot-plug watcher, running for the duration of a test.
struct Watch
{
    Watch() { DeviceManager::instance().start(); }
    ~Watch() { DeviceManager::instance().stop(); }
};

} // namespace

class HotPlugTest : public QObject
{
    Q_OBJECT

private slots:
    void pluggingInEnumeratesOnceWithStatusZero()
    {
        const HotPlugReceiver receiver;
        const Watch watch;
        const LogCapture log;
        PluggedCamera camera;
        QTRY_COMPARE_WITH_TIMEOUT(receiver.count(), 1, kTimeoutMs);
        QTest::qWait(300);
        QCOMPARE(receiver.statuses(), QVector<int>{0});
        QCOMPARE(receiver.notifications().front().cameras.size(), 1);
        QCOMPARE(receiver.notifications().front().cameras.first().displayName, camera.videoNode());
        QCOMPARE(linesWith(log, kArrivalText), 1);
        QCOMPARE(linesWith(log, kRemovalText), 0);
        QCOMPARE(linesWith(log, "获取设备"), 1);
    }

    void unpluggingEnumeratesOnceWithStatusOne()
    {
        PluggedCamera camera;
        const HotPlugReceiver receiver;
        const Watch watch;
        const LogCapture log;
        camera.unplug();
        QTRY_COMPARE_WITH_TIMEOUT(receiver.count(), 1, kTimeoutMs);
        QTest::qWait(300);
        QCOMPARE(receiver.statuses(), QVector<int>{1});
        QVERIFY(receiver.notifications().front().cameras.isEmpty());
        QCOMPARE(linesWith(log, kArrivalText), 0);
        QCOMPARE(linesWith(log, kRemovalText), 1);
    }

    void logLinesNameTheirOriginAndLine()
    {
        const HotPlugReceiver receiver;
        const Watch watch;
        const LogCapture log;
        PluggedCamera camera;
        QTRY_COMPARE_WITH_TIMEOUT(receiver.count(), 1, kTimeoutMs);
        const QStringList lines = log.texts().filter(
            QRegularExpression(QStringLiteral("^DeviceManager::WndProc \\d+ 检测到插入设备")));
        QCOMPARE(lines.size(), 1);
        QCOMPARE(log.texts()
                     .filter(QRegularExpression(
                         QStringLiteral("^CameraHandle::getCameras \\d+ 获取设备")))
                     .size(),
                 1);
    }

    void deviceWithoutHidInterfaceMakesNoEvent()
    {
        const HotPlugReceiver receiver;
        const Watch watch;
        PluggedCamera webcam{{"hid", "0"}};
        webcam.unplug();
        webcam.plug();
        PluggedCamera camera;
        QTRY_COMPARE_WITH_TIMEOUT(receiver.count(), 1, kTimeoutMs);
        QTest::qWait(300);
        QCOMPARE(receiver.count(), 1);
        QCOMPARE(receiver.notifications().front().cameras.size(), 2);
    }

    void everyHidInterfaceMakesAnEventWhosesoeverItIs()
    {
        const HotPlugReceiver receiver;
        const Watch watch;
        PluggedCamera keyboard{{"vid", "1111"}, {"video", "0"}};
        QTRY_COMPARE_WITH_TIMEOUT(receiver.count(), 1, kTimeoutMs);
        QVERIFY(receiver.notifications().front().cameras.isEmpty());
    }

    void notificationsComeOnTheWatchersThread()
    {
        const HotPlugReceiver receiver;
        const Watch watch;
        PluggedCamera camera;
        camera.unplug();
        QTRY_COMPARE_WITH_TIMEOUT(receiver.count(), 2, kTimeoutMs);
        const auto notifications = receiver.notifications();
        QVERIFY(notifications.at(0).thread != QThread::currentThread());
        QCOMPARE(notifications.at(0).thread, notifications.at(1).thread);
    }

    void aBurstOfEventsIsTakenInOrder()
    {
        const HotPlugReceiver receiver;
        const Watch watch;
        PluggedCamera camera;
        QVector<int> expected{0};
        for (int i = 0; i < 20; ++i) {
            camera.unplug();
            camera.plug();
            expected << 1 << 0;
        }
        QTRY_COMPARE_WITH_TIMEOUT(receiver.count(), expected.size(), 3 * kTimeoutMs);
        QCOMPARE(receiver.statuses(), expected);
        QCOMPARE(receiver.notifications().back().cameras.size(), 1);
    }

    void lostEventsAreFoundByListingTheInterfaces()
    {
        PluggedCamera first;
        const HotPlugReceiver receiver;
        const Watch watch;
        std::unique_ptr<PluggedCamera> second;
        {
            LostUevents lost;
            second = std::make_unique<PluggedCamera>();
            first.unplug();
            lost.overflow();
            QTRY_COMPARE_WITH_TIMEOUT(receiver.count(), 2, kTimeoutMs);
        }
        QCOMPARE(receiver.statuses(), (QVector<int>{1, 0}));
        const auto notifications = receiver.notifications();
        QCOMPARE(notifications.at(1).cameras.size(), 1);
        QCOMPARE(notifications.at(1).cameras.first().displayName, second->videoNode());

        second->unplug();
        QTRY_COMPARE_WITH_TIMEOUT(receiver.count(), 3, kTimeoutMs);
        QCOMPARE(receiver.statuses().last(), 1);
    }

    void lostEventsThatChangedNothingAreNotReported()
    {
        PluggedCamera camera;
        const HotPlugReceiver receiver;
        const Watch watch;
        {
            LostUevents lost;
            PluggedCamera passing;
            passing.unplug();
            lost.overflow();
        }
        camera.unplug();
        QTRY_COMPARE_WITH_TIMEOUT(receiver.count(), 1, kTimeoutMs);
        QCOMPARE(receiver.statuses(), QVector<int>{1});
    }

    void twoCamerasAtOnceAreTwoEvents()
    {
        const HotPlugReceiver receiver;
        const Watch watch;
        auto first = std::make_unique<PluggedCamera>();
        auto second = std::make_unique<PluggedCamera>();
        QTRY_COMPARE_WITH_TIMEOUT(receiver.count(), 2, kTimeoutMs);
        QCOMPARE(receiver.notifications().back().cameras.size(), 2);
        first.reset();
        QTRY_COMPARE_WITH_TIMEOUT(receiver.count(), 3, kTimeoutMs);
        QCOMPARE(receiver.notifications().back().cameras.size(), 1);
        QCOMPARE(receiver.notifications().back().cameras.first().displayName, second->videoNode());
    }

    void withoutReceiverNothingHappens()
    {
        const Watch watch;
        const LogCapture log;
        PluggedCamera camera;
        QTRY_COMPARE_WITH_TIMEOUT(linesWith(log, kArrivalText), 1, kTimeoutMs);
    }

    void startedTwiceItStaysOneWatch()
    {
        const HotPlugReceiver receiver;
        DeviceManager& manager = DeviceManager::instance();
        manager.start();
        QVERIFY(manager.isRunning());
        const int threads = ProcessUsage::threads();
        manager.start();
        manager.start();
        QTRY_VERIFY(ProcessUsage::threads() <= threads);
        PluggedCamera camera;
        QTRY_COMPARE_WITH_TIMEOUT(receiver.count(), 1, kTimeoutMs);
        QTest::qWait(300);
        QCOMPARE(receiver.count(), 1);
        manager.stop();
        QVERIFY(!manager.isRunning());
    }

    void stoppedWatchIsSilentAndStartsAgain()
    {
        const HotPlugReceiver receiver;
        DeviceManager& manager = DeviceManager::instance();
        for (int round = 0; round < 3; ++round) {
            manager.start();
            PluggedCamera camera;
            QTRY_COMPARE_WITH_TIMEOUT(receiver.count(), round + 1, kTimeoutMs);
            manager.stop();
            camera.unplug();
            QTest::qWait(200);
            QCOMPARE(receiver.count(), round + 1);
        }
    }

    void stopEndsTheThreadAtOnceAndLeavesNothing()
    {
        DeviceManager& manager = DeviceManager::instance();
        manager.start(); // what the first start loads for good is not counted
        manager.stop();
        const int threads = ProcessUsage::threads();
        const int descriptors = ProcessUsage::openDescriptors();
        for (int i = 0; i < 20; ++i) {
            manager.start();
            QElapsedTimer timer;
            timer.start();
            manager.stop();
            manager.stop();
            QVERIFY(timer.elapsed() < 1000);
        }
        QTRY_VERIFY(ProcessUsage::threads() <= threads);
        QTRY_COMPARE(ProcessUsage::openDescriptors(), descriptors);
    }

    void stopDuringABurstWaitsForTheNotificationUnderWay()
    {
        for (int i = 0; i < 10; ++i) {
            auto receiver = std::make_unique<HotPlugReceiver>();
            DeviceManager::instance().start();
            PluggedCamera camera;
            camera.unplug();
            camera.plug();
            DeviceManager::instance().stop();
            const int count = receiver->count();
            QTest::qWait(30);
            QCOMPARE(receiver->count(), count);
        }
    }

    void withoutASoundServerNothingIsLoggedAboutIt()
    {
        const LogCapture log;
        {
            const Watch watch;
            QTest::qWait(500);
        }
        QCOMPARE(log.texts(QtCriticalMsg), QStringList());
        QCOMPARE(log.texts(QtWarningMsg), QStringList());
    }
};

QTEST_GUILESS_MAIN(HotPlugTest)
#include "HotPlugTest.moc"
