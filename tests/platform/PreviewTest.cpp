#include "FrameCollector.h"
#include "LogCapture.h"
#include "PluggedCamera.h"
#include "ProcessUsage.h"
#include "UVCCamera.h"

#include <memory>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QThread>
#include <QtTest>
#include <QWidget>

namespace {

constexpr int kTimeoutMs = 15000;
constexpr qint64 kStopTimeoutMs = 2000;
/// A start that waits for a picture which does not come takes longer.
constexpr qint64 kStartTimeoutMs = 1000;

int colourCount(const QImage& image)
{
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); y += 4) {
        for (int x = 0; x < image.width(); x += 4)
            colours.insert(image.pixel(x, y));
    }
    return colours.size();
}

/// A camera, a window for its picture, and the program's preview of it.
struct Preview
{
    explicit Preview(const QSize& size = QSize(333, 187),
                     std::initializer_list<PluggedCamera::Option> options = {})
        : camera(options)
    {
        window.setWindowFlags(Qt::BypassWindowManagerHint); // may be larger than the screen
        window.resize(size);
        window.show();
        isShown = QTest::qWaitForWindowExposed(&window);
    }
    ~Preview() { program.closeDevice(); }

    bool open() { return program.openDevice(camera.videoPath(), window.winId()); }
    bool start() { return open() && program.startCapture(); }
    bool isDelivering() { return !frames.next().isNull(); }
    QImage shown() { return window.grab().toImage().convertToFormat(QImage::Format_RGB32); }
    bool isPainted() { return colourCount(shown()) > 50; }

    PluggedCamera camera;
    QWidget window;
    UVCCamera program;
    FrameCollector frames{program};
    bool isShown = false;
};

double brightnessOf(const QImage& image)
{
    double sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x)
            sum += qGray(row[x]);
    }
    return sum / (static_cast<double>(image.width()) * image.height());
}

double saturationOf(const QImage& image)
{
    double sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x)
            sum += std::max({qRed(row[x]), qGreen(row[x]), qBlue(row[x])}) -
                   std::min({qRed(row[x]), qGreen(row[x]), qBlue(row[x])});
    }
    return sum / (static_cast<double>(image.width()) * image.height());
}

double differenceOf(const QImage& a, const QImage& b)
{
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        const auto* rowA = reinterpret_cast<const QRgb*>(a.constScanLine(y));
        const auto* rowB = reinterpret_cast<const QRgb*>(b.constScanLine(y));
        for (int x = 0; x < a.width(); ++x)
            sum += std::abs(qGray(rowA[x]) - qGray(rowB[x]));
    }
    return sum / (static_cast<double>(a.width()) * a.height());
}

bool hasLine(const LogCapture& log, const char* beginning)
{
    const QStringList lines = log.texts();
    return std::any_of(lines.begin(), lines.end(), [beginning](const QString& line) {
        return line.startsWith(QLatin1String(beginning));
    });
}

constexpr const char* kBusyLine = "preview: camera in use by another program:";

} // namespace

class PreviewTest : public QObject
{
    Q_OBJECT

private slots:
    void framesComeInTheSizeOfTheTarget_data()
    {
        QTest::addColumn<QSize>("target");
        QTest::addColumn<QString>("modes");
        QTest::addColumn<QString>("format");
        QTest::addColumn<QSize>("mode");
        const QString all = QStringLiteral("YUYV:1920x1080+YUYV:1280x720+YUYV:640x360+"
                                           "MJPG:3840x2160+MJPG:1920x1080+MJPG:640x360");
        const auto row = [](const char* name, QSize target, const QString& modes,
                            const char* format, QSize mode) {
            QTest::newRow(name) << target << modes << QString::fromLatin1(format) << mode;
        };
        row("smallest mode for a small target", {333, 187}, all, "YUYV", {640, 360});
        row("next mode for a larger target", {800, 450}, all, "YUYV", {1280, 720});
        row("full HD for a full HD target", {1920, 1080}, all, "YUYV", {1920, 1080});
        row("compressed where only that covers", {2400, 1350}, all, "MJPG", {3840, 2160});
        row("largest where none covers", {2400, 1350}, "YUYV:640x360+YUYV:1280x720", "YUYV",
            {1280, 720});
        row("camera with compressed modes alone", {333, 187}, "MJPG:1920x1080+MJPG:640x360", "MJPG",
            {640, 360});
        row("camera with one large mode", {333, 187}, "YUYV:1920x1080", "YUYV", {1920, 1080});
    }
    void framesComeInTheSizeOfTheTarget()
    {
        QFETCH(QSize, target);
        QFETCH(QString, modes);
        QFETCH(QString, format);
        QFETCH(QSize, mode);
        Preview preview(target, {{"modes", modes.toStdString()}});
        QVERIFY(preview.isShown);
        QVERIFY(preview.open());
        QVERIFY(preview.program.isOpened());
        QCOMPARE(QSize(preview.program.width(), preview.program.height()), target);
        QVERIFY(preview.program.startCapture());
        QVERIFY(preview.program.isRunning());

        const QImage frame = preview.frames.next();
        QCOMPARE(frame.size(), target);
        QCOMPARE(frame.format(), QImage::Format_RGB32);
        QVERIFY(colourCount(frame) > 50);
        QVERIFY(brightnessOf(frame) > 40);
        QVERIFY(brightnessOf(frame) < 220);
        const auto stats = preview.camera.stats();
        QCOMPARE(QString::fromStdString(stats.fourcc), format);
        QCOMPARE(QSize(stats.width, stats.height), mode);
    }

    void pictureKeepsItsShapeInATargetOfAnotherShape()
    {
        Preview preview(QSize(400, 400));
        QVERIFY(preview.start());
        QCOMPARE(preview.frames.next().size(), QSize(400, 225));
    }

    void bothFormatsShowTheSamePicture()
    {
        Preview raw(QSize(640, 360), {{"modes", "YUYV:640x360"}});
        QVERIFY(raw.start());
        Preview compressed(QSize(640, 360), {{"modes", "MJPG:640x360"}});
        QVERIFY(compressed.start());
        // Only a small part of the picture moves.
        QVERIFY(differenceOf(raw.frames.next(), compressed.frames.next()) < 12);
    }

    void pictureIsPaintedIntoTheTarget()
    {
        Preview preview;
        QVERIFY(preview.start());
        QTRY_VERIFY_WITH_TIMEOUT(preview.isPainted(), kTimeoutMs);
        QVERIFY(differenceOf(preview.shown(), preview.frames.newest()) < 12);
    }

    /// As after a change of the monitor's scale.
    void pictureFitsItsTargetAgain_data()
    {
        QTest::addColumn<QSize>("target");
        QTest::newRow("larger") << QSize(500, 281);
        QTest::newRow("smaller") << QSize(222, 125);
    }
    void pictureFitsItsTargetAgain()
    {
        QFETCH(QSize, target);
        Preview preview;
        QVERIFY(preview.start());
        QTRY_VERIFY_WITH_TIMEOUT(preview.isPainted(), kTimeoutMs);
        preview.window.resize(target);
        preview.program.fitVideoWindow();
        // The whole picture, in the whole target.
        const auto differs = [&preview, &target] {
            return differenceOf(preview.shown(),
                                preview.frames.newest().scaled(target, Qt::IgnoreAspectRatio,
                                                               Qt::SmoothTransformation));
        };
        QTRY_VERIFY_WITH_TIMEOUT(preview.shown().size() == target && differs() < 12, kTimeoutMs);
    }

    void windowThatDoesNotExistLeavesThePreviewWithoutAPlace()
    {
        PluggedCamera camera;
        UVCCamera program;
        constexpr WId noWindow = 0xDEAD;
        QVERIFY(program.openDevice(camera.videoPath(), noWindow));
        QVERIFY(program.startCapture());
        QVERIFY(program.isRunning());
        QVERIFY(camera.waitFor("frames>=3"));
        program.stopCapture();
        program.closeDevice();
        QVERIFY(camera.isReleased());
    }

    void secondStartWithoutAStopShowsThePicture()
    {
        Preview preview;
        QVERIFY(preview.start());
        QVERIFY(preview.isDelivering());
        // A picture is announced to the first video window, which has not taken it yet.
        const int before = preview.frames.count();
        const QDeadlineTimer deadline(kTimeoutMs);
        while (preview.frames.count() < before + 2 && !deadline.hasExpired())
            QThread::yieldCurrentThread();
        QVERIFY(preview.program.startCapture());
        QVERIFY(preview.program.isRunning());
        QTRY_VERIFY_WITH_TIMEOUT(preview.isPainted(), kTimeoutMs);
        QVERIFY(preview.isDelivering());
        preview.program.stopCapture();
        QVERIFY(preview.camera.waitFor("idle"));
    }

    void brightnessChangesThePicture()
    {
        Preview preview;
        QVERIFY(preview.start());
        preview.program.initVideoProcAmp();
        const QPair<int, int> range = preview.program.getBrightRange();
        QVERIFY(preview.program.setBright(range.first));
        const double dark = brightnessOf(preview.frames.next());
        QVERIFY(preview.program.setBright(range.second));
        const double bright = brightnessOf(preview.frames.next());
        QVERIFY2(bright > dark + 40, QByteArray::number(bright - dark).constData());
    }

    void saturationChangesThePicture()
    {
        Preview preview;
        QVERIFY(preview.start());
        preview.program.initVideoProcAmp();
        const QPair<int, int> range = preview.program.getSaturationRange();
        QVERIFY(preview.program.setSaturation(range.first));
        const double grey = saturationOf(preview.frames.next());
        QVERIFY(preview.program.setSaturation(range.second));
        QVERIFY(saturationOf(preview.frames.next()) > grey + 10);
    }

    void mirrorTurnsThePictureRound()
    {
        Preview preview;
        QVERIFY(preview.start());
        preview.program.setCurrentDevicePath(preview.camera.hidPath());
        QVERIFY(preview.program.initHid());
        const QImage before = preview.frames.next();
        QVERIFY(preview.program.setHorizontalMirror(1));
        const QImage after = preview.frames.next();
        QVERIFY(differenceOf(after, before.mirrored(true, false)) <
                differenceOf(after, before) / 2);
    }

    void settingsAreReadAndWrittenWhileThePictureRuns()
    {
        Preview preview;
        QVERIFY(preview.start());
        QVERIFY(preview.isDelivering());
        preview.program.setCurrentDevicePath(preview.camera.hidPath());
        QVERIFY(preview.program.initHid());
        for (int i = 0; i < 20; ++i) {
            QVERIFY(preview.program.setCameraView(60 + 30 * (i % 3)));
            QCOMPARE(preview.program.getCameraView(), 60 + 30 * (i % 3));
        }
        QMap<QString, int> format;
        QVERIFY(preview.program.getResolution(format));
        QCOMPARE(format, (QMap<QString, int>{{"width", 640}, {"height", 360}, {"streamon", 1}}));
        QVERIFY(preview.isDelivering());
    }

    void settingsWorkWhileAnotherProgramStreams()
    {
        Preview other;
        QVERIFY(other.start());
        UVCCamera program;
        QVERIFY(program.openDevice(other.camera.videoPath(), other.window.winId()));
        program.initVideoProcAmp();
        QCOMPARE(program.getBrightRange(), (QPair<int, int>(0, 255)));
        QVERIFY(program.setBright(200));
        QCOMPARE(program.getBright(), 200);
        program.setCurrentDevicePath(other.camera.hidPath());
        QVERIFY(program.initHid());
        QVERIFY(program.setHorizontalMirror(1));
        QCOMPARE(program.getHorizontalMirror(), 1);
        QVERIFY(other.isDelivering());
    }

    void cameraInUseByAnotherProgramIsToldApartInTheLog()
    {
        Preview other;
        QVERIFY(other.start());
        QVERIFY(other.isDelivering());
        const LogCapture log;
        UVCCamera program;
        QVERIFY(program.openDevice(other.camera.videoPath(), other.window.winId()));
        QVERIFY(!program.startCapture());
        QVERIFY(!program.isRunning());
        QVERIFY(hasLine(log, kBusyLine));
        QVERIFY(other.isDelivering());
    }

    void busyCameraStartsOnceItIsFree()
    {
        Preview preview;
        preview.camera.fault("busy");
        QElapsedTimer timer;
        timer.start();
        {
            const LogCapture log;
            QVERIFY(preview.open());
            QVERIFY(!preview.program.startCapture());
            QVERIFY(hasLine(log, kBusyLine));
        }
        QVERIFY(timer.elapsed() < 3000);
        QVERIFY(preview.program.isOpened());
        preview.camera.clearFaults();
        QVERIFY(preview.program.startCapture());
        QVERIFY(preview.isDelivering());
    }

    void otherFailuresAreNotCalledInUse()
    {
        Preview preview;
        QVERIFY(preview.open());
        preview.camera.unplug();
        const LogCapture log;
        QVERIFY(!preview.program.startCapture());
        QVERIFY(!hasLine(log, kBusyLine));
        QVERIFY(hasLine(log, "preview:"));
    }

    void unknownPathIsNotOpened()
    {
        Preview preview;
        QVERIFY(!preview.program.openDevice(QStringLiteral("/dev/video77#vid_b206&pid_b215#1-1"),
                                            preview.window.winId()));
        QVERIFY(!preview.program.openDevice(QString(), preview.window.winId()));
        QVERIFY(!preview.program.openDevice(preview.camera.videoNode(), preview.window.winId()));
        QVERIFY(!preview.program.isOpened());
        QVERIFY(!preview.program.startCapture());
        QVERIFY(preview.camera.isReleased());
    }

    void metadataNodeIsNotOpened()
    {
        Preview preview;
        QString path = preview.camera.videoPath();
        path.replace(preview.camera.videoNode(), preview.camera.metadataNode());
        QVERIFY(!preview.program.openDevice(path, preview.window.winId()));
    }

    void captureDoesNotStartBeforeADeviceIsOpen()
    {
        UVCCamera program;
        QVERIFY(!program.startCapture());
        QVERIFY(!program.isRunning());
        program.stopCapture();
        program.closeDevice();
    }

    void hiddenTargetGetsNoFrames()
    {
        Preview preview;
        QVERIFY(preview.start());
        QVERIFY(preview.isDelivering());
        preview.window.hide();
        QTest::qWait(200);
        const int before = preview.frames.count();
        const auto streamed = preview.camera.stats().frames;
        QTest::qWait(600);
        QCOMPARE(preview.frames.count(), before);
        QVERIFY(preview.camera.stats().frames > streamed); // the camera still streams meanwhile
        preview.window.show();
        QVERIFY(preview.isDelivering());
    }

    void stoppedPreviewGetsNoFramesAndStartsAgain()
    {
        Preview preview;
        QVERIFY(preview.open());
        for (int i = 0; i < 5; ++i) {
            QVERIFY(preview.program.startCapture());
            QVERIFY(preview.isDelivering());
            preview.program.stopCapture();
            QVERIFY(!preview.program.isRunning());
            QVERIFY(preview.program.isOpened());
            QVERIFY(preview.camera.waitFor("idle"));
            const int before = preview.frames.count();
            QTest::qWait(150);
            QCOMPARE(preview.frames.count(), before);
        }
    }

    void closedPreviewHoldsNothing()
    {
        Preview preview;
        QVERIFY(preview.start());
        preview.program.closeDevice();
        QVERIFY(!preview.program.isOpened());
        QVERIFY(!preview.program.startCapture());
        QVERIFY(preview.camera.isReleased());
    }

    void openingAnotherCameraGivesTheFirstUp()
    {
        Preview preview;
        QVERIFY(preview.start());
        PluggedCamera second;
        QVERIFY(preview.program.openDevice(second.videoPath(), preview.window.winId()));
        QVERIFY(preview.camera.isReleased());
        QVERIFY(preview.program.startCapture());
        QVERIFY(preview.isDelivering());
        QVERIFY(second.stats().streaming);
        preview.program.closeDevice();
        QVERIFY(second.isReleased());
    }

    void cameraObjectThatEndsWhileRunningGivesTheCameraBack()
    {
        PluggedCamera camera;
        QWidget window;
        window.show();
        {
            UVCCamera program;
            QVERIFY(program.openDevice(camera.videoPath(), window.winId()));
            QVERIFY(program.startCapture());
        }
        QVERIFY(camera.isReleased());
    }

    void windowThatEndsWhileRunningTakesNoFrames()
    {
        PluggedCamera camera;
        auto window = std::make_unique<QWidget>();
        window->show();
        UVCCamera program;
        const FrameCollector frames(program);
        QVERIFY(program.openDevice(camera.videoPath(), window->winId()));
        QVERIFY(program.startCapture());
        QTRY_VERIFY_WITH_TIMEOUT(frames.count() > 3, kTimeoutMs);
        window.reset();
        QTest::qWait(200);
        const int before = frames.count();
        QTest::qWait(300);
        QCOMPARE(frames.count(), before);
        program.stopCapture();
        program.closeDevice();
        QVERIFY(camera.isReleased());
    }

    void cameraThatNeverSendsAFrameDoesNotHang()
    {
        Preview preview;
        preview.camera.fault("frozen");
        QVERIFY(preview.open());
        QElapsedTimer timer;
        timer.start();
        QVERIFY(preview.program.startCapture());
        QVERIFY2(timer.elapsed() < kStartTimeoutMs,
                 QByteArray::number(timer.elapsed()).constData());
        timer.restart();
        preview.program.stopCapture();
        QVERIFY(timer.elapsed() < kStopTimeoutMs);
        preview.camera.clearFaults();
        QVERIFY(preview.program.startCapture());
        QVERIFY(preview.isDelivering());
    }

    void cameraThatFreezesDoesNotHangTheStop()
    {
        Preview preview;
        QVERIFY(preview.start());
        QVERIFY(preview.isDelivering());
        preview.camera.fault("frozen");
        QTest::qWait(200);
        QElapsedTimer timer;
        timer.start();
        preview.program.stopCapture();
        preview.program.closeDevice();
        QVERIFY(timer.elapsed() < kStopTimeoutMs);
        QVERIFY(preview.camera.isReleased());
    }

    void cameraThatLeavesDuringThePreviewEndsIt()
    {
        for (int i = 0; i < 5; ++i) {
            Preview preview;
            QVERIFY(preview.start());
            QVERIFY(preview.isDelivering());
            const QString path = preview.camera.videoPath();
            const LogCapture log;
            const QSignalSpy failed(&preview.program, &UVCCamera::sigCaptureFailed);
            preview.camera.unplug();
            QTRY_COMPARE_WITH_TIMEOUT(failed.count(), 1, kTimeoutMs);
            QVERIFY(hasLine(log, "preview:"));
            QVERIFY(!preview.program.isRunning());
            QElapsedTimer timer;
            timer.start();
            preview.program.stopCapture();
            preview.program.closeDevice();
            QVERIFY(timer.elapsed() < kStopTimeoutMs);
            QVERIFY(!preview.program.openDevice(path, preview.window.winId()));
            QVERIFY(preview.camera.isReleased());
            preview.camera.plug();
            QVERIFY(preview.start());
            QVERIFY(preview.isDelivering());
        }
    }

    void cameraWithoutModesForThePreviewIsNotOpened()
    {
        // The node of a camera that was replaced by a camera without a picture.
        PluggedCamera camera{{"video", "0"}};
        QWidget window;
        UVCCamera program;
        QVERIFY(!program.openDevice(QStringLiteral("/dev/video0#vid_b206&pid_b215#1-1"),
                                    window.winId()));
    }

    void repeatedPreviewsLeaveNoThreadOrDescriptor()
    {
        Preview preview;
        const auto round = [&preview] { return preview.start() && preview.isDelivering(); };
        for (int i = 0; i < 3; ++i)
            QVERIFY(round());
        preview.program.closeDevice();
        QVERIFY(preview.camera.isReleased());
        const int descriptors = ProcessUsage::openDescriptors();
        const int threads = ProcessUsage::threads();
        for (int i = 0; i < 15; ++i)
            QVERIFY(round());
        preview.program.closeDevice();
        QVERIFY(preview.camera.isReleased());
        QTRY_COMPARE(ProcessUsage::openDescriptors(), descriptors);
        QTRY_VERIFY(ProcessUsage::threads() <= threads);
    }
};

QTEST_MAIN(PreviewTest)
#include "PreviewTest.moc"
