#include "FrameCollector.h"
#include "PluggedCamera.h"
#include "UVCCamera.h"

#include <memory>
#include <QProcess>
#include <QSignalSpy>
#include <QtTest>
#include <QWidget>

using Cause = PreviewFailure::Cause;

/// The cause that the system reports when a camera shows no picture.
class PreviewFailureTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void programThatUsesTheCameraIsNamed();
    void useWithoutAProgramHasNoName();
    void missingPermissionIsTold();
    void cameraThatHasLeftIsTold();
    void cameraThatLeavesBeforeTheStartIsTold();
    void cameraThatLeavesDuringThePreviewIsTold();
    void successEndsTheCause();

private:
    [[nodiscard]] bool open()
    {
        return m_program->openDevice(m_camera->videoPath(), m_window->winId());
    }
    [[nodiscard]] Cause cause() const { return m_program->lastFailure().cause; }
    [[nodiscard]] QString detail() const { return m_program->lastFailure().detail; }

    std::unique_ptr<PluggedCamera> m_camera;
    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<UVCCamera> m_program;
};

void PreviewFailureTest::init()
{
    m_camera = std::make_unique<PluggedCamera>();
    m_window = std::make_unique<QWidget>();
    m_window->resize(320, 180);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    m_program = std::make_unique<UVCCamera>();
    QCOMPARE(cause(), Cause::None);
}

void PreviewFailureTest::cleanup()
{
    m_program.reset();
    m_window.reset();
    m_camera.reset();
}

void PreviewFailureTest::programThatUsesTheCameraIsNamed()
{
    QProcess other;
    other.setStandardOutputFile(QProcess::nullDevice());
    other.start(QStringLiteral("gst-launch-1.0"),
                {"v4l2src", "device=" + m_camera->videoNode(), "!", "fakesink"});
    QVERIFY(other.waitForStarted());
    QVERIFY(m_camera->waitFor("frames>=3"));
    QVERIFY(open());
    QCOMPARE(cause(), Cause::None);
    QVERIFY(!m_program->startCapture());
    QCOMPARE(cause(), Cause::InUse);
    QCOMPARE(detail(), QStringLiteral("gst-launch-1.0"));
    other.kill();
    QVERIFY(other.waitForFinished());
}

void PreviewFailureTest::useWithoutAProgramHasNoName()
{
    m_camera->fault("busy");
    QVERIFY(open());
    QVERIFY(!m_program->startCapture());
    QCOMPARE(cause(), Cause::InUse);
    QCOMPARE(detail(), QString());
}

void PreviewFailureTest::missingPermissionIsTold()
{
    m_camera->fault("denied");
    QVERIFY(!open());
    QCOMPARE(cause(), Cause::NoPermission);
    QVERIFY(!m_program->isOpened());
}

void PreviewFailureTest::cameraThatHasLeftIsTold()
{
    const QString path = m_camera->videoPath();
    m_camera->unplug();
    QVERIFY(!m_program->openDevice(path, m_window->winId()));
    QCOMPARE(cause(), Cause::Gone);
}

void PreviewFailureTest::cameraThatLeavesBeforeTheStartIsTold()
{
    QVERIFY(open());
    m_camera->unplug();
    QVERIFY(!m_program->startCapture());
    QCOMPARE(cause(), Cause::Gone);
}

void PreviewFailureTest::cameraThatLeavesDuringThePreviewIsTold()
{
    FrameCollector frames(*m_program);
    QVERIFY(open());
    QVERIFY(m_program->startCapture());
    QVERIFY(!frames.next().isNull());
    QSignalSpy failed(m_program.get(), &UVCCamera::sigCaptureFailed);
    m_camera->unplug();
    QVERIFY(failed.wait());
    QCOMPARE(cause(), Cause::Gone);
}

void PreviewFailureTest::successEndsTheCause()
{
    m_camera->fault("busy");
    QVERIFY(open());
    QVERIFY(!m_program->startCapture());
    QCOMPARE(cause(), Cause::InUse);
    m_camera->clearFaults();
    QVERIFY(m_program->startCapture());
    QCOMPARE(cause(), Cause::None);
}

QTEST_MAIN(PreviewFailureTest)
#include "PreviewFailureTest.moc"
