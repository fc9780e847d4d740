#include "Amplifier.h"
#include "ComObject.h"
#include "SoftCamera.h"
#include "UVCCamera.h"
#include "windows/DirectShowCaptureGraph.h"
#include "Wine.h"

#include <mutex>
#include <QtTest>
#include <QUuid>
#include <QWidget>
#include <uuids.h>

namespace {

constexpr HRESULT kBusy = static_cast<HRESULT>(0x800700AA);
constexpr HRESULT kNoResources = static_cast<HRESULT>(0x800705AA);

/// Copies the frames of a camera on the streaming thread.
class Frames : public QObject
{
public:
    explicit Frames(const UVCCamera& camera)
    {
        connect(&camera, &UVCCamera::sigImage, this, &Frames::take, Qt::DirectConnection);
    }

    [[nodiscard]] int count() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_count;
    }
    [[nodiscard]] QImage last() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_last;
    }
    [[nodiscard]] Qt::HANDLE thread() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_thread;
    }

private:
    void take(const QImage& image)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        ++m_count;
        m_last = image.copy();
        m_thread = QThread::currentThreadId();
    }

    mutable std::mutex m_mutex;
    int m_count = 0;
    QImage m_last;
    Qt::HANDLE m_thread = nullptr;
};

/// The window that contains a preview, or null.
HWND videoWindowIn(const QWidget& target)
{
    return ::GetWindow(reinterpret_cast<HWND>(target.effectiveWinId()), GW_CHILD);
}

QRect placeIn(HWND child, const QWidget& target)
{
    RECT area{};
    ::GetWindowRect(child, &area);
    POINT corner{area.left, area.top};
    ::ScreenToClient(reinterpret_cast<HWND>(target.effectiveWinId()), &corner);
    return {corner.x, corner.y, area.right - area.left, area.bottom - area.top};
}

} // namespace

/// The preview of a software camera through the system's graph, grabber and renderer.
class DirectShowPreviewTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void unknownPathDoesNotOpen();
    void startNeedsAnOpenDevice();
    void framesArriveWithTheCamerasPicture_data();
    void framesArriveWithTheCamerasPicture();
    void everyFormatIsAskedFor_data();
    void everyFormatIsAskedFor();
    void framesArriveOnAnotherThread();
    void framesArriveAtTheRateOfTheCamera();
    void pictureFillsTheWindow();
    void pictureFollowsItsWindow();
    void pictureFitsItsWindowAgain();
    void invalidWindowLeavesTheGraphRunning();
    void stopEndsTheStreamAndHidesThePicture();
    void streamCanBeStartedAgain();
    void closingReleasesTheCamera();
    void openingAgainReplacesTheGraph();
    void failedAttemptLeavesNothingBehind();
    void cameraInUseIsDetected_data();
    void cameraInUseIsDetected();
    void formatWithoutADecoderIsNamed();
    void cameraThatCannotBeBoundDoesNotOpen_data();
    void cameraThatCannotBeBoundDoesNotOpen();
    void amplifierReturnsRanges();
    void amplifierAcceptsValues();
    void amplifierRefusesValuesOutOfRange();
    void writeUsesTheFlagsReadLast();
    void cameraWithoutAmplifierHasNoValues();
    void amplifierNeedsAnOpenDevice();

private:
    bool open() { return m_camera->openDevice(SoftCamera::supportedPath(1), m_window->winId()); }

    std::unique_ptr<SoftCameraClass> m_class;
    std::unique_ptr<SoftCamera> m_device;
    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<UVCCamera> m_camera;
};

void DirectShowPreviewTest::init()
{
    m_class = std::make_unique<SoftCameraClass>();
    QVERIFY(m_class->isServed());
    m_device = std::make_unique<SoftCamera>("MarvikTest1", QString("Camera"),
                                            SoftCamera::supportedPath(1));
    QVERIFY2(m_device->isPluggedIn(), "the list of video inputs cannot be written");
    m_window = std::make_unique<QWidget>();
    m_window->resize(400, 300);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    m_camera = std::make_unique<UVCCamera>();
}

void DirectShowPreviewTest::cleanup()
{
    m_camera.reset();
    QCOMPARE(m_device->script().filtersAlive.load(), 0);
    QCOMPARE(m_device->script().streamsAlive.load(), 0);
    m_window.reset();
    m_device.reset();
    m_class.reset();
    QCOMPARE(LiveObjects::count(), 0);
}

void DirectShowPreviewTest::unknownPathDoesNotOpen()
{
    QVERIFY(!m_camera->openDevice(SoftCamera::supportedPath(2), m_window->winId()));
    QVERIFY(!m_camera->isOpened());
    QCOMPARE(m_camera->lastFailure().cause, PreviewFailure::Cause::Gone);
    QCOMPARE(m_device->script().binds.load(), 0);
}

void DirectShowPreviewTest::startNeedsAnOpenDevice()
{
    QVERIFY(!m_camera->startCapture());
    QVERIFY(!m_camera->isRunning());
}

void DirectShowPreviewTest::framesArriveWithTheCamerasPicture_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("topDown");
    QTest::newRow("rows from below") << QSize(320, 240) << false;
    QTest::newRow("rows from above") << QSize(320, 240) << true;
    QTest::newRow("large") << QSize(1920, 1080) << true;
}

void DirectShowPreviewTest::framesArriveWithTheCamerasPicture()
{
    QFETCH(QSize, size);
    QFETCH(bool, topDown);
    m_device->script().size = size;
    m_device->script().topDown = topDown;
    const Frames frames(*m_camera);
    QVERIFY(open());
    QCOMPARE(QSize(m_camera->width(), m_camera->height()), size);
    QVERIFY(m_camera->startCapture());
    QTRY_VERIFY(frames.count() >= 3);
    m_camera->stopCapture();

    // The image is the unchanged buffer, so rows that start at the bottom are upside down.
    const QImage image = frames.last();
    QCOMPARE(image.size(), size);
    for (const QPoint& at :
         {QPoint(1, 1), QPoint(size.width() - 2, 1), QPoint(1, size.height() - 2),
          QPoint(size.width() - 2, size.height() - 2)}) {
        const int y = topDown ? at.y() : size.height() - 1 - at.y();
        QCOMPARE(image.pixelColor(at.x(), y).rgb(),
                 QColor(PictureFormat::colourAt(size, at.x(), at.y())).rgb());
    }
}

void DirectShowPreviewTest::everyFormatIsAskedFor_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<QUuid>("subtype");
    QTest::newRow("8 bits") << int(PreviewFormat::Rgb8) << QUuid(MEDIASUBTYPE_RGB8);
    QTest::newRow("16 bits") << int(PreviewFormat::Rgb555) << QUuid(MEDIASUBTYPE_RGB555);
    QTest::newRow("24 bits") << int(PreviewFormat::Rgb24) << QUuid(MEDIASUBTYPE_RGB24);
    QTest::newRow("32 bits") << int(PreviewFormat::Rgb32) << QUuid(MEDIASUBTYPE_RGB32);
}

// No current screen has every depth, so the test chooses the graph instead of the screen.
void DirectShowPreviewTest::everyFormatIsAskedFor()
{
    QFETCH(const int, format);
    QFETCH(const QUuid, subtype);
    DirectShowCaptureGraph graph;
    QVERIFY(graph.create());
    QVERIFY(graph.createSampleGrabber());
    QVERIFY(graph.bindCaptureSource(SoftCamera::supportedPath(1)));
    QVERIFY(graph.addFilters());
    QVERIFY(graph.setGrabberFormat(static_cast<PreviewFormat>(format)));
    const bool connected = graph.renderPreview(m_window->winId());
    QCOMPARE(QUuid(m_device->script().requestedSubtype()), subtype);
    if (isWine() && subtype == QUuid(MEDIASUBTYPE_RGB555))
        QSKIP("Wine's renderer takes no such frames, and Wine has no converter");
    QVERIFY(connected);
    QCOMPARE(graph.connectedFrameSize().value_or(QSize()), m_device->script().size);
}

void DirectShowPreviewTest::framesArriveOnAnotherThread()
{
    const Frames frames(*m_camera);
    QVERIFY(open());
    QVERIFY(m_camera->startCapture());
    QTRY_VERIFY(frames.count() > 0);
    QVERIFY(frames.thread() != QThread::currentThreadId());
}

void DirectShowPreviewTest::framesArriveAtTheRateOfTheCamera()
{
    const Frames frames(*m_camera);
    QVERIFY(open());
    QVERIFY(m_camera->startCapture());
    QTRY_VERIFY(frames.count() >= 60);
    m_camera->stopCapture();
    // No frame is dropped or repeated.
    QVERIFY(qAbs(frames.count() - m_device->script().framesTaken) <= 1);
}

void DirectShowPreviewTest::pictureFillsTheWindow()
{
    QVERIFY(open());
    QVERIFY(m_camera->startCapture());
    HWND video = videoWindowIn(*m_window);
    QVERIFY(video);
    QVERIFY(::IsWindowVisible(video));
    QCOMPARE(placeIn(video, *m_window), QRect(0, 0, 400, 300));
    const LONG_PTR style = ::GetWindowLongPtrW(video, GWL_STYLE);
    QCOMPARE(style & (WS_CHILD | WS_CLIPCHILDREN | WS_CAPTION), WS_CHILD | WS_CLIPCHILDREN);

    QTRY_VERIFY(m_device->script().framesTaken > 5);
    const QSize size = m_device->script().size;
    const auto shown = [this](int x, int y) {
        HDC screen = ::GetDC(nullptr);
        POINT at{x, y};
        ::ClientToScreen(reinterpret_cast<HWND>(m_window->winId()), &at);
        const COLORREF colour = ::GetPixel(screen, at.x, at.y);
        ::ReleaseDC(nullptr, screen);
        return QColor(GetRValue(colour), GetGValue(colour), GetBValue(colour)).name();
    };
    const auto expected = [&size](int x, int y) {
        return QColor(PictureFormat::colourAt(size, x, y)).name();
    };
    QTRY_COMPARE(shown(10, 10), expected(0, 0));
    QCOMPARE(shown(390, 10), expected(size.width() - 1, 0));
    QCOMPARE(shown(10, 290), expected(0, size.height() - 1));
    QCOMPARE(shown(390, 290), expected(size.width() - 1, size.height() - 1));
}

void DirectShowPreviewTest::pictureFollowsItsWindow()
{
    QVERIFY(open());
    QVERIFY(m_camera->startCapture());
    HWND video = videoWindowIn(*m_window);
    m_window->move(m_window->pos() + QPoint(50, 40));
    QTRY_COMPARE(placeIn(video, *m_window), QRect(0, 0, 400, 300));
    m_window->hide();
    QTRY_VERIFY(!::IsWindowVisible(video));
    m_window->show();
    QTRY_VERIFY(::IsWindowVisible(video));
}

/// As after a change of the monitor's scale.
void DirectShowPreviewTest::pictureFitsItsWindowAgain()
{
    QVERIFY(open());
    QVERIFY(m_camera->startCapture());
    HWND video = videoWindowIn(*m_window);
    for (const QSize& size : {QSize(600, 450), QSize(300, 225)}) {
        m_window->resize(size);
        m_camera->fitVideoWindow();
        QCOMPARE(placeIn(video, *m_window), QRect(QPoint(), size));
    }
    QVERIFY(::IsWindowVisible(video));
}

void DirectShowPreviewTest::invalidWindowLeavesTheGraphRunning()
{
    const Frames frames(*m_camera);
    QVERIFY(m_camera->openDevice(SoftCamera::supportedPath(1), 0x7FFFFFFC));
    QVERIFY(m_camera->startCapture());
    QVERIFY(m_camera->isRunning());
    QTRY_VERIFY(frames.count() > 0);
    QVERIFY(!videoWindowIn(*m_window));
}

void DirectShowPreviewTest::stopEndsTheStreamAndHidesThePicture()
{
    const Frames frames(*m_camera);
    QVERIFY(open());
    QVERIFY(m_camera->startCapture());
    QTRY_VERIFY(frames.count() > 0);
    HWND video = videoWindowIn(*m_window);
    m_camera->stopCapture();
    QVERIFY(!m_camera->isRunning());
    QVERIFY(m_camera->isOpened());
    QVERIFY(!::IsWindowVisible(video));
    QCOMPARE(m_device->script().streamsAlive.load(), 0);
    const int atStop = frames.count();
    QTest::qWait(150);
    QCOMPARE(frames.count(), atStop);
}

void DirectShowPreviewTest::streamCanBeStartedAgain()
{
    const Frames frames(*m_camera);
    QVERIFY(open());
    for (int round = 0; round < 3; ++round) {
        const int before = frames.count();
        QVERIFY(m_camera->startCapture());
        QTRY_VERIFY(frames.count() > before + 2);
        QVERIFY(::IsWindowVisible(videoWindowIn(*m_window)));
        m_camera->stopCapture();
    }
    QCOMPARE(m_device->script().binds.load(), 1);
}

void DirectShowPreviewTest::closingReleasesTheCamera()
{
    QVERIFY(open());
    QVERIFY(m_camera->startCapture());
    QCOMPARE(m_device->script().filtersAlive.load(), 1);
    m_camera->closeDevice();
    QVERIFY(!m_camera->isOpened());
    QVERIFY(!m_camera->isRunning());
    QVERIFY(!m_camera->startCapture());
    QCOMPARE(m_device->script().filtersAlive.load(), 0);
}

void DirectShowPreviewTest::openingAgainReplacesTheGraph()
{
    const Frames frames(*m_camera);
    QVERIFY(open());
    QVERIFY(m_camera->startCapture());
    QVERIFY(open());
    QCOMPARE(m_device->script().filtersAlive.load(), 1);
    QVERIFY(m_camera->startCapture());
    QTRY_VERIFY(frames.count() > 0);
}

void DirectShowPreviewTest::failedAttemptLeavesNothingBehind()
{
    m_device->script().subtypes.clear();
    QVERIFY(!open());
    QVERIFY(!m_camera->isOpened());
    m_device->script().subtypes = PictureFormat::all();
    QVERIFY(open());
    QCOMPARE(m_device->script().filtersAlive.load(), 1);
    QVERIFY(m_camera->startCapture());
}

void DirectShowPreviewTest::cameraInUseIsDetected_data()
{
    QTest::addColumn<int>("refusal");
    QTest::newRow("busy") << static_cast<int>(kBusy);
    QTest::newRow("no resources") << static_cast<int>(kNoResources);
}

void DirectShowPreviewTest::cameraInUseIsDetected()
{
    QFETCH(int, refusal);
    m_device->script().reportsRefusal = isWine();
    QVERIFY(open());
    m_device->script().pauseResult = refusal;
    QVERIFY(!m_camera->startCapture());
    QVERIFY(!m_camera->isRunning());

    m_device->script().pauseResult = S_OK; // the other program released the camera
    QVERIFY(m_camera->startCapture());
    QVERIFY(m_camera->isRunning());
}

/// A camera with one format that the system cannot change into the grabber's, as one that has only
/// NV12.
void DirectShowPreviewTest::formatWithoutADecoderIsNamed()
{
    constexpr GUID p010 = {
        0x30313050, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71}};
    m_device->script().subtypes = {p010};
    QVERIFY(!open());
    QCOMPARE(m_camera->lastFailure().cause, PreviewFailure::Cause::PartMissing);
    QCOMPARE(m_camera->lastFailure().detail,
             QStringLiteral("the decoder for the camera's picture format"));
    QCOMPARE(m_device->script().filtersAlive.load(), 0);
}

void DirectShowPreviewTest::cameraThatCannotBeBoundDoesNotOpen_data()
{
    using Cause = PreviewFailure::Cause;
    QTest::addColumn<int>("refusal");
    QTest::addColumn<int>("cause");
    const auto row = [](const char* name, HRESULT refusal, Cause cause) {
        QTest::newRow(name) << static_cast<int>(refusal) << static_cast<int>(cause);
    };
    row("busy", kBusy, Cause::InUse);
    row("no resources", kNoResources, Cause::InUse);
    row("not allowed", E_ACCESSDENIED, Cause::NoPermission);
    row("class missing", REGDB_E_CLASSNOTREG, Cause::PartMissing);
    row("library missing", HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND), Cause::PartMissing);
    row("not specified", E_FAIL, Cause::Other);
}

void DirectShowPreviewTest::cameraThatCannotBeBoundDoesNotOpen()
{
    QFETCH(int, refusal);
    QFETCH(int, cause);
    m_device->script().bindResult = refusal;
    QVERIFY(!open());
    QCOMPARE(static_cast<int>(m_camera->lastFailure().cause), cause);
    QVERIFY(!m_camera->isOpened());
    QCOMPARE(m_device->script().filtersAlive.load(), 0);
}

void DirectShowPreviewTest::amplifierReturnsRanges()
{
    QVERIFY(open());
    m_camera->initVideoProcAmp();
    QCOMPARE(m_camera->getBrightRange(), qMakePair(0, 255));
    QCOMPARE(m_camera->getContrastRange(), qMakePair(10, 90));
    QCOMPARE(m_camera->getSaturationRange(), qMakePair(-64, 64));
    QCOMPARE(m_camera->getSharpnessRange(), qMakePair(0, 7));
}

void DirectShowPreviewTest::amplifierAcceptsValues()
{
    QVERIFY(open());
    m_camera->initVideoProcAmp();
    QCOMPARE(m_camera->getBright(), 128);
    QCOMPARE(m_camera->getContrast(), 50);
    QCOMPARE(m_camera->getSaturation(), 0);
    QCOMPARE(m_camera->getSharpness(), 3);
    QVERIFY(m_camera->setBright(200));
    QVERIFY(m_camera->setContrast(20));
    QVERIFY(m_camera->setSaturation(-30));
    QVERIFY(m_camera->setSharpness(7));
    QCOMPARE(m_camera->getBright(), 200);
    QCOMPARE(m_camera->getContrast(), 20);
    QCOMPARE(m_camera->getSaturation(), -30);
    QCOMPARE(m_camera->getSharpness(), 7);
}

void DirectShowPreviewTest::amplifierRefusesValuesOutOfRange()
{
    QVERIFY(open());
    m_camera->initVideoProcAmp();
    QVERIFY(m_camera->setBright(10));
    QVERIFY(!m_camera->setBright(256));
    QCOMPARE(m_camera->getBright(), 10);
    QCOMPARE(m_device->script().writes().size(), std::size_t{1});
}

void DirectShowPreviewTest::writeUsesTheFlagsReadLast()
{
    QVERIFY(open());
    m_camera->initVideoProcAmp();
    m_camera->getContrastRange();
    QVERIFY(m_camera->setContrast(60));
    m_camera->getContrast();
    QVERIFY(m_camera->setContrast(61));
    const auto writes = m_device->script().writes();
    QCOMPARE(writes.size(), std::size_t{2});
    QCOMPARE(writes.at(0).flags, Amplifier::kCapabilities);
    QCOMPARE(writes.at(1).flags, Amplifier::kManual);
}

void DirectShowPreviewTest::cameraWithoutAmplifierHasNoValues()
{
    m_device->script().hasAmplifier = false;
    QVERIFY(open());
    m_camera->initVideoProcAmp();
    QCOMPARE(m_camera->getBrightRange(), qMakePair(0, 0));
    QVERIFY(!m_camera->setBright(200));
    QCOMPARE(m_camera->getBright(), 0);
}

void DirectShowPreviewTest::amplifierNeedsAnOpenDevice()
{
    m_camera->initVideoProcAmp();
    QVERIFY(!m_camera->setBright(1));
    QCOMPARE(m_camera->getBrightRange(), qMakePair(0, 0));
}

QTEST_MAIN(DirectShowPreviewTest)
#include "DirectShowPreviewTest.moc"
