#include "SoftCamera.h"
#include "UVCCamera.h"
#include "Wine.h"

#include <QtTest>
#include <QWidget>
#include <uuids.h>

/// The preview requests the format of the screen from the camera, at any colour depth.
class ScreenDepthTest : public QObject
{
    Q_OBJECT

private slots:
    void cameraIsAskedForTheScreensFormat();
};

void ScreenDepthTest::cameraIsAskedForTheScreensFormat()
{
    const SoftCameraClass served;
    SoftCamera device("MarvikTest1", QString("Camera"), SoftCamera::supportedPath(1));
    QVERIFY2(device.isPluggedIn(), "the list of video inputs cannot be written");
    QWidget window;
    window.resize(320, 240);
    window.show();

    HDC screen = ::GetDC(nullptr);
    const int depth = ::GetDeviceCaps(screen, BITSPIXEL);
    ::ReleaseDC(nullptr, screen);
    const QMap<int, GUID> formats{{8, MEDIASUBTYPE_RGB8},
                                  {16, MEDIASUBTYPE_RGB555},
                                  {24, MEDIASUBTYPE_RGB24},
                                  {32, MEDIASUBTYPE_RGB32}};
    QVERIFY(formats.contains(depth));

    UVCCamera camera;
    const bool opened = camera.openDevice(SoftCamera::supportedPath(1), window.winId());
    QVERIFY(device.script().requestedSubtype() == formats.value(depth));
    // Wine's renderer takes no frames with five bits for each colour, and Wine has no converter.
    QCOMPARE(opened, !(isWine() && depth == 16));
    if (opened) {
        QVERIFY(camera.startCapture());
        QTRY_VERIFY(device.script().framesTaken > 3);
    }
}

QTEST_MAIN(ScreenDepthTest)
#include "ScreenDepthTest.moc"
