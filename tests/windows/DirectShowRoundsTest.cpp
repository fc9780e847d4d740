#include "ComObject.h"
#include "SoftCamera.h"
#include "UVCCamera.h"

#include <QtTest>
#include <QWidget>

/// Opening and closing cameras many times leaks nothing.
class DirectShowRoundsTest : public QObject
{
    Q_OBJECT

private slots:
    void everyRoundReleasesItsResources();
};

void DirectShowRoundsTest::everyRoundReleasesItsResources()
{
    constexpr int rounds = 500;
    {
        const SoftCameraClass served;
        SoftCamera device("MarvikTest1", QString("Camera"), SoftCamera::supportedPath(1));
        QVERIFY2(device.isPluggedIn(), "the list of video inputs cannot be written");
        QWidget window;
        window.resize(320, 240);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const int atRest = LiveObjects::count();
        UVCCamera camera;
        for (int round = 0; round < rounds; ++round) {
            const int framesBefore = device.script().framesTaken;
            QVERIFY(camera.openDevice(SoftCamera::supportedPath(1), window.winId()));
            camera.initVideoProcAmp();
            QVERIFY(camera.setBright(round % 256));
            QVERIFY(camera.startCapture());
            while (device.script().framesTaken == framesBefore)
                QTest::qWait(1);
            camera.stopCapture();
            camera.closeDevice();
            QCOMPARE(device.script().filtersAlive.load(), 0);
            QCOMPARE(device.script().streamsAlive.load(), 0);
            QCOMPARE(LiveObjects::count(), atRest);
        }
        QCOMPARE(device.script().binds.load(), rounds);
    }
    QCOMPARE(LiveObjects::count(), 0);
}

QTEST_MAIN(DirectShowRoundsTest)
#include "DirectShowRoundsTest.moc"
