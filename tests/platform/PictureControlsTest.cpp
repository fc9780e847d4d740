#include "PluggedCamera.h"
#include "UVCCamera.h"

#include <array>
#include <QtTest>
#include <QWidget>

namespace {

struct Control
{
    const char* name; ///< of the camera's register
    QPair<int, int> (UVCCamera::*range)();
    int (UVCCamera::*get)();
    bool (UVCCamera::*set)(int);
};

constexpr std::array<Control, 4> kControls{{
    {"brightness", &UVCCamera::getBrightRange, &UVCCamera::getBright, &UVCCamera::setBright},
    {"contrast", &UVCCamera::getContrastRange, &UVCCamera::getContrast, &UVCCamera::setContrast},
    {"saturation", &UVCCamera::getSaturationRange, &UVCCamera::getSaturation,
     &UVCCamera::setSaturation},
    {"sharpness", &UVCCamera::getSharpnessRange, &UVCCamera::getSharpness,
     &UVCCamera::setSharpness},
}};

const Control& controlOfThisRow()
{
    QFETCH(int, control);
    return kControls[static_cast<std::size_t>(control)];
}

void addControlRows()
{
    QTest::addColumn<int>("control");
    for (std::size_t i = 0; i < kControls.size(); ++i)
        QTest::newRow(kControls[i].name) << static_cast<int>(i);
}

struct OpenCamera
{
    OpenCamera(std::initializer_list<PluggedCamera::Option> options = {})
        : camera(options)
    {
        isOpen = program.openDevice(camera.videoPath(), window.winId());
        program.initVideoProcAmp();
    }

    PluggedCamera camera;
    QWidget window;
    UVCCamera program;
    bool isOpen = false;
};

} // namespace

class PictureControlsTest : public QObject
{
    Q_OBJECT

private slots:
    void rangeIsTheCamerasOwn_data() { addControlRows(); }
    void rangeIsTheCamerasOwn()
    {
        const Control& control = controlOfThisRow();
        const OpenCamera plain;
        OpenCamera other{{std::string("range-") + control.name, "-64:64:2:10"}};
        QVERIFY(other.isOpen);
        QCOMPARE((other.program.*control.range)(), (QPair<int, int>(-64, 64)));
        QCOMPARE((other.program.*control.get)(), 10);
        for (const Control& each : kControls) {
            if (each.name != control.name)
                QCOMPARE((other.program.*each.range)(), (QPair<int, int>(0, 255)));
        }
    }

    void valueIsReadFromTheCamera_data() { addControlRows(); }
    void valueIsReadFromTheCamera()
    {
        const Control& control = controlOfThisRow();
        OpenCamera open;
        for (const int value : {0, 77, 255}) {
            open.camera.setValue(control.name, value);
            QCOMPARE((open.program.*control.get)(), value);
        }
    }

    void valueIsSetInTheCameraAndNoOtherChanges_data() { addControlRows(); }
    void valueIsSetInTheCameraAndNoOtherChanges()
    {
        const Control& control = controlOfThisRow();
        OpenCamera open;
        (open.program.*control.range)();
        for (const int value : {0, 77, 255}) {
            QVERIFY((open.program.*control.set)(value));
            QCOMPARE(open.camera.value(control.name), value);
        }
        for (const Control& each : kControls) {
            if (each.name != control.name)
                QCOMPARE(open.camera.value(each.name), 128);
        }
    }

    void cameraWithoutAmplifierChangesNothing_data() { addControlRows(); }
    void cameraWithoutAmplifierChangesNothing()
    {
        const Control& control = controlOfThisRow();
        OpenCamera open{{"amp", "0"}};
        QVERIFY(open.isOpen);
        QCOMPARE((open.program.*control.range)(), (QPair<int, int>(0, 0)));
        QVERIFY(!(open.program.*control.set)(77));
        QCOMPARE((open.program.*control.get)(), 0);
    }

    void refusedValueLeavesTheStoredOne_data() { addControlRows(); }
    void refusedValueLeavesTheStoredOne()
    {
        const Control& control = controlOfThisRow();
        OpenCamera open;
        QVERIFY((open.program.*control.set)(50));
        open.camera.fault("control-error");
        QVERIFY(!(open.program.*control.set)(90));
        open.camera.unplug(); // only the stored value can be returned
        QCOMPARE((open.program.*control.get)(), 50);
    }

    void withoutAnOpenDeviceThereIsNothingToSet_data() { addControlRows(); }
    void withoutAnOpenDeviceThereIsNothingToSet()
    {
        const Control& control = controlOfThisRow();
        UVCCamera program;
        program.initVideoProcAmp();
        QCOMPARE((program.*control.range)(), (QPair<int, int>(0, 0)));
        QCOMPARE((program.*control.get)(), 0);
        QVERIFY(!(program.*control.set)(10));
    }

    void unpluggedCameraRefuses_data() { addControlRows(); }
    void unpluggedCameraRefuses()
    {
        const Control& control = controlOfThisRow();
        OpenCamera open;
        open.camera.unplug();
        QCOMPARE((open.program.*control.range)(), (QPair<int, int>(0, 0)));
        QVERIFY(!(open.program.*control.set)(10));
    }

    void closedDeviceGivesItsControlsBack()
    {
        OpenCamera open;
        QVERIFY(open.camera.waitFor("video>=1"));
        open.program.closeDevice();
        QVERIFY(open.camera.isReleased());
        QCOMPARE(open.program.getBrightRange(), (QPair<int, int>(0, 0)));
    }

    void controlsOpenWithoutAPreview_data() { addControlRows(); }
    void controlsOpenWithoutAPreview()
    {
        const Control& control = controlOfThisRow();
        PluggedCamera camera;
        QList<UVCDeviceInfo> devices;
        UVCCamera::enumerateCameras(devices);
        QCOMPARE(devices.size(), 1);
        const auto controls = openVideoProcAmp(devices.first());
        QVERIFY(controls);
        for (const PictureSettingRow& row : PictureSettings::rows()) {
            if (QLatin1String(row.name) != QLatin1String(control.name))
                continue;
            VideoProcAmpRecord record;
            record.property = row.property;
            QVERIFY(controls->getRange(record));
            QVERIFY(controls->set(record, 101));
            QVERIFY(controls->get(record));
            QCOMPARE(record.value, 101L);
        }
        QCOMPARE(camera.value(control.name), 101);
        QCOMPARE(camera.stats().streaming, false);
    }

    void controlsOfALostCameraDoNotOpen()
    {
        QList<UVCDeviceInfo> devices;
        {
            PluggedCamera camera;
            UVCCamera::enumerateCameras(devices);
            QCOMPARE(devices.size(), 1);
        }
        QVERIFY(!openVideoProcAmp(devices.first()));
    }
};

QTEST_MAIN(PictureControlsTest)
#include "PictureControlsTest.moc"
