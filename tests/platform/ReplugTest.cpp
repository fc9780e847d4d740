#include "DeviceHomePage.h"
#include "DeviceManager.h"
#include "FrameCollector.h"
#include "HotPlugReceiver.h"
#include "PluggedCamera.h"
#include "ProcessUsage.h"
#include "UVCCamera.h"

#include <QtTest>
#include <QWidget>

namespace {

constexpr int kTimeoutMs = 20000;
constexpr int kWarmUpRounds = 20;
constexpr int kDefaultRounds = 200;
constexpr int kListRounds = 20;
/// The heap may grow this much by fragmentation and caches, but less than by a leak in every round.
constexpr long kHeapSlack = 512L * 1024;

/// MARVIK_REPLUG_ROUNDS changes the number.
int rounds()
{
    bool isNumber = false;
    const int number = qEnvironmentVariableIntValue("MARVIK_REPLUG_ROUNDS", &isNumber);
    return isNumber ? number : kDefaultRounds;
}

class Usage
{
public:
    /// Fails the test when the usage has grown since this object was created. Waits until threads
    /// that are ending have gone.
    void verifyUnchanged() const
    {
        QTRY_VERIFY(ProcessUsage::threads() <= m_threads);
        QTRY_COMPARE(ProcessUsage::openDescriptors(), m_descriptors);
        const long grown = ProcessUsage::heapBytes() - m_heap;
        QVERIFY2(grown < kHeapSlack, QByteArray::number(static_cast<qlonglong>(grown)).constData());
    }

private:
    int m_descriptors = ProcessUsage::openDescriptors();
    int m_threads = ProcessUsage::threads();
    long m_heap = ProcessUsage::heapBytes();
};

} // namespace

/// A camera that is unplugged and plugged in repeatedly leaks nothing in the program.
class ReplugTest : public QObject
{
    Q_OBJECT

private slots:
    void manyRoundsOfWatchSettingsAndPreview()
    {
        const HotPlugReceiver receiver;
        DeviceManager::instance().start();
        PluggedCamera camera;
        QWidget window;
        window.resize(333, 187);
        window.show();
        UVCCamera program;
        const FrameCollector frames(program);
        QTRY_COMPARE_WITH_TIMEOUT(receiver.count(), 1, kTimeoutMs);

        const auto round = [&](int number) {
            program.setCurrentDevicePath(camera.hidPath());
            QVERIFY(program.initHid());
            QCOMPARE(program.getCameraView(), 120);
            QVERIFY(program.openDevice(camera.videoPath(), window.winId()));
            program.initVideoProcAmp();
            QCOMPARE(program.getBrightRange(), (QPair<int, int>(0, 255)));
            const int before = frames.count();
            QVERIFY(program.startCapture());
            if (number % 10 == 0)
                QTRY_VERIFY_WITH_TIMEOUT(frames.count() > before, kTimeoutMs);
            const int notified = receiver.count();
            // In every second round the camera is unplugged while the picture is running.
            if (number % 2 == 0)
                program.closeDevice();
            camera.unplug();
            program.closeDevice();
            QCOMPARE(program.getCameraView(), 0);
            camera.plug();
            QTRY_COMPARE_WITH_TIMEOUT(receiver.count(), notified + 2, kTimeoutMs);
        };
        for (int i = 0; i < kWarmUpRounds; ++i)
            round(i);
        if (QTest::currentTestFailed())
            return;
        const Usage before;
        for (int i = 0; i < rounds() && !QTest::currentTestFailed(); ++i)
            round(i);
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(receiver.notifications().back().cameras.size(), 1);
        before.verifyUnchanged();
        DeviceManager::instance().stop();
    }

    void deviceListRebuiltManyTimes()
    {
        qRegisterMetaType<QList<UVCDeviceInfo>>("QList<UVCDeviceInfo>");
        DeviceHomePage page;
        page.resize(360, 620);
        page.show();
        int rebuilds = 0;
        connect(&page, &DeviceHomePage::sigUpdateCameraListFinished, &page,
                [&rebuilds] { ++rebuilds; });
        DeviceManager::instance().start();
        PluggedCamera camera;
        QTRY_COMPARE_WITH_TIMEOUT(rebuilds, 1, kTimeoutMs);

        const auto round = [&] {
            const int before = rebuilds;
            camera.unplug();
            camera.plug();
            QTRY_COMPARE_WITH_TIMEOUT(rebuilds, before + 2, kTimeoutMs);
            QCOMPARE(page.entryCount(), 1);
        };
        for (int i = 0; i < 3; ++i)
            round();
        if (QTest::currentTestFailed())
            return;
        const Usage before;
        for (int i = 0; i < kListRounds && !QTest::currentTestFailed(); ++i)
            round();
        if (QTest::currentTestFailed())
            return;
        before.verifyUnchanged();
        DeviceManager::instance().stop();
        QVERIFY(camera.isReleased());
    }
};

QTEST_MAIN(ReplugTest)
#include "ReplugTest.moc"
