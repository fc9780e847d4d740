#include "ComCalls.h"
#include "ComObject.h"
#include "SoftCamera.h"
#include "UVCCamera.h"

#include <memory>
#include <QtTest>
#include <QWidget>

/// Opening and closing cameras many times leaks nothing, also when a call of the system fails.
class DirectShowRoundsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void everyRoundReleasesItsResources();
    void everyFailingCallIsSurvived_data();
    void everyFailingCallIsSurvived();

private:
    /// Everything that the program does with a camera.
    /// @return whether the picture ran
    bool playOnce(UVCCamera& camera) const;

    std::unique_ptr<SoftCameraClass> m_class;
    std::unique_ptr<SoftCamera> m_device;
    std::unique_ptr<QWidget> m_window;
};

void DirectShowRoundsTest::init()
{
    m_class = std::make_unique<SoftCameraClass>();
    m_device = std::make_unique<SoftCamera>("MarvikTest1", QString("Camera"),
                                            SoftCamera::supportedPath(1));
    QVERIFY2(m_device->isPluggedIn(), "the list of video inputs cannot be written");
    m_window = std::make_unique<QWidget>();
    m_window->resize(320, 240);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    ComCalls::restart();
}

void DirectShowRoundsTest::cleanup()
{
    m_window.reset();
    m_device.reset();
    m_class.reset();
    QCOMPARE(LiveObjects::count(), 0);
    QCOMPARE(ComCalls::references(), 0);
}

bool DirectShowRoundsTest::playOnce(UVCCamera& camera) const
{
    const int framesBefore = m_device->script().framesTaken;
    bool runs = camera.openDevice(SoftCamera::supportedPath(1), m_window->winId());
    if (runs) {
        camera.initVideoProcAmp();
        camera.getBrightRange();
        camera.setBright(camera.getBright() / 2);
        runs = camera.startCapture();
        camera.fitVideoWindow();
        while (runs && m_device->script().framesTaken == framesBefore)
            QTest::qWait(1);
        camera.stopCapture();
    }
    camera.closeDevice();
    return runs;
}

void DirectShowRoundsTest::everyRoundReleasesItsResources()
{
    constexpr int rounds = 500;
    const int atRest = LiveObjects::count();
    {
        UVCCamera camera;
        const int references = ComCalls::references();
        QVERIFY(references > 0); // those to the empty graph
        for (int round = 0; round < rounds; ++round) {
            QVERIFY(playOnce(camera));
            QCOMPARE(m_device->script().filtersAlive.load(), 0);
            QCOMPARE(m_device->script().streamsAlive.load(), 0);
            QCOMPARE(LiveObjects::count(), atRest);
            QCOMPARE(ComCalls::references(), references);
        }
    }
    QCOMPARE(m_device->script().binds.load(), rounds);
    QCOMPARE(ComCalls::ownedWindowsReleased(), 0);
}

void DirectShowRoundsTest::everyFailingCallIsSurvived_data()
{
    QTest::addColumn<bool>("thenAll");
    QTest::newRow("one call") << false;
    QTest::newRow("one call and all later ones") << true;
}

/// For each call of a round in turn, from the creation of the camera to its end.
void DirectShowRoundsTest::everyFailingCallIsSurvived()
{
    QFETCH(bool, thenAll);
    const auto how = thenAll ? ComCalls::Failing::FromThenOn : ComCalls::Failing::Once;
    const int atRest = LiveObjects::count();
    int failing = 0;
    int refusals = 0;
    do {
        ComCalls::restart(++failing, how);
        auto camera = std::make_unique<UVCCamera>();
        if (!playOnce(*camera)) {
            QVERIFY(camera->lastFailure().cause != PreviewFailure::Cause::None);
            ++refusals;
        }
        QVERIFY(!camera->isRunning());
        QVERIFY(!camera->isOpened());
        QCOMPARE(m_device->script().filtersAlive.load(), 0);
        QCOMPARE(m_device->script().streamsAlive.load(), 0);
        const int calls = ComCalls::count();
        // The next attempt is as good as the first.
        ComCalls::restart();
        QVERIFY2(playOnce(*camera), QByteArray::number(failing).constData());
        camera.reset();
        QCOMPARE(ComCalls::references(), 0);
        QCOMPARE(LiveObjects::count(), atRest);
        if (calls < failing)
            break;
    } while (true);
    qInfo("%d calls, %d of them necessary", failing - 1, refusals);
    QVERIFY(failing > 40);
    QVERIFY(refusals > 10);
}

QTEST_MAIN(DirectShowRoundsTest)
#include "DirectShowRoundsTest.moc"
