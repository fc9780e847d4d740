#include "FrameCollector.h"
#include "PluggedCamera.h"
#include "UVCCamera.h"

#include <cstdlib>
#include <QScreen>
#include <QtTest>
#include <QWidget>

namespace {

constexpr int kTimeoutMs = 15000;
/// A pixel of a 15-bit screen has steps of eight; the picture moves a little as well.
constexpr double kLargestDifference = 14;

double differenceOf(const QImage& a, const QImage& b)
{
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            sum += std::abs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y)));
    }
    return sum / (static_cast<double>(a.width()) * a.height());
}

} // namespace

/// The picture on a screen of any colour depth.
class PreviewDepthTest : public QObject
{
    Q_OBJECT

private slots:
    void pictureIsOnTheScreen();
};

void PreviewDepthTest::pictureIsOnTheScreen()
{
    const int depth = qEnvironmentVariableIntValue("MARVIK_SCREEN_DEPTH");
    QCOMPARE(QGuiApplication::primaryScreen()->depth(), depth);
    PluggedCamera camera;
    QWidget window;
    window.setWindowFlags(Qt::BypassWindowManagerHint);
    window.setGeometry(20, 20, 320, 180);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    UVCCamera program;
    FrameCollector frames(program);
    QVERIFY(program.openDevice(camera.videoPath(), window.winId()));
    QVERIFY(program.isOpened());
    QVERIFY(program.startCapture());
    QVERIFY(!frames.next().isNull());
    const auto shown = [] {
        return QGuiApplication::primaryScreen()->grabWindow(0, 20, 20, 320, 180).toImage();
    };
    QTRY_VERIFY_WITH_TIMEOUT(differenceOf(shown(), frames.newest()) < kLargestDifference,
                             kTimeoutMs);
}

QTEST_MAIN(PreviewDepthTest)
#include "PreviewDepthTest.moc"
