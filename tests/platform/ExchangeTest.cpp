#include "PluggedCamera.h"
#include "UVCCamera.h"

#include <array>
#include <QtTest>

namespace {

struct Setting
{
    const char* name; ///< of the camera's register
    int (UVCCamera::*read)();
    bool (UVCCamera::*write)(int);
    int readCommand;
};

constexpr std::array<Setting, 6> kSettings{{
    {"autoFrameMode", &UVCCamera::getAutoFrameMode, &UVCCamera::setAutoFrameMode, 0x5030},
    {"frameMaster", &UVCCamera::getFrameMaster, &UVCCamera::setFrameMaster, 0x5040},
    {"PickupSensitivity", &UVCCamera::getPickupSensitivity, &UVCCamera::setPickupSensitivity,
     0x5070},
    {"autoFrameSwicth", &UVCCamera::getAutoFrameSwitch, &UVCCamera::setAutoFrameSwitch, 0x5080},
    {"HorizontalMirror", &UVCCamera::getHorizontalMirror, &UVCCamera::setHorizontalMirror, 0x5090},
    {"CameraView", &UVCCamera::getCameraView, &UVCCamera::setCameraView, 0x50A0},
}};

void addSettingRows()
{
    QTest::addColumn<int>("setting");
    for (std::size_t i = 0; i < kSettings.size(); ++i)
        QTest::newRow(kSettings[i].name) << static_cast<int>(i);
}

const Setting& settingOfThisRow()
{
    QFETCH(int, setting);
    return kSettings[static_cast<std::size_t>(setting)];
}

/// A camera and the program's link to it.
struct Link
{
    Link(std::initializer_list<PluggedCamera::Option> options = {})
        : camera(options)
    {
        program.setCurrentDevicePath(camera.hidPath());
        isOpen = program.initHid();
    }

    PluggedCamera camera;
    UVCCamera program;
    bool isOpen = false;
};

} // namespace

class ExchangeTest : public QObject
{
    Q_OBJECT

private slots:
    void settingIsReadFromItsRegister_data() { addSettingRows(); }
    void settingIsReadFromItsRegister()
    {
        const Setting& setting = settingOfThisRow();
        Link link;
        QVERIFY(link.isOpen);
        for (const int value : {0, 1, 2, 60, 127}) {
            link.camera.setValue(setting.name, value);
            QCOMPARE((link.program.*setting.read)(), value);
        }
        const auto request = link.camera.lastRequest();
        QCOMPARE(static_cast<int>(request.command), setting.readCommand);
        QCOMPARE(request.dataStatus, 2U);
        QCOMPARE(request.dataLength, 0U);
        QCOMPARE(request.packNumber, 0U);
        QCOMPARE(QString::fromStdString(request.verdict), QStringLiteral("ok"));
    }

    void settingByteIsASignedNumber_data() { addSettingRows(); }
    void settingByteIsASignedNumber()
    {
        const Setting& setting = settingOfThisRow();
        Link link;
        link.camera.setValue(setting.name, 0xFF);
        QCOMPARE((link.program.*setting.read)(), -1);
        link.camera.setValue(setting.name, 0x80);
        QCOMPARE((link.program.*setting.read)(), -128);
    }

    void settingIsWrittenToItsRegister_data() { addSettingRows(); }
    void settingIsWrittenToItsRegister()
    {
        const Setting& setting = settingOfThisRow();
        Link link;
        for (const int value : {1, 0, 2, 120}) {
            QVERIFY((link.program.*setting.write)(value));
            QCOMPARE(link.camera.value(setting.name), value);
        }
        const auto request = link.camera.lastRequest();
        QCOMPARE(static_cast<int>(request.command), setting.readCommand + 1);
        QCOMPARE(request.dataStatus, 1U);
        QCOMPARE(request.dataLength, 1U);
        QCOMPARE(request.payload, (std::vector<std::uint8_t>{120}));
    }

    void onlyTheLowByteOfAValueIsWritten()
    {
        Link link;
        QVERIFY(link.program.setCameraView(300));
        QCOMPARE(link.camera.value("CameraView"), 0x2C);
    }

    void lastByteOfAnAnswerIsTheValue()
    {
        Link link{{"prefix", "0001ff"}};
        link.camera.setValue("HorizontalMirror", 1);
        QCOMPARE(link.program.getHorizontalMirror(), 1);
        link.camera.setValue("HorizontalMirror", 0);
        QCOMPARE(link.program.getHorizontalMirror(), 0);
    }

    void secondFramingModeIsRefusedWhileTheFirstIsOn()
    {
        Link link;
        QVERIFY(link.program.setAutoFrameSwitch(1));
        QVERIFY(!link.program.setFrameMaster(1));
        QCOMPARE(link.camera.value("frameMaster"), 0);
        QVERIFY(link.program.setAutoFrameSwitch(0));
        QVERIFY(link.program.setFrameMaster(1));
    }

    void serialNumberIsReadAsText()
    {
        Link link{{"serial", "SVAA009500551234"}};
        QCOMPARE(link.program.getSerialNumber(), QStringLiteral("SVAA009500551234"));
    }

    void serialNumberOfTwoCamerasIsEachItsOwn()
    {
        Link first{{"serial", "FIRST"}};
        Link second{{"serial", "SECOND"}};
        QCOMPARE(first.program.getSerialNumber(), QStringLiteral("FIRST"));
        QCOMPARE(second.program.getSerialNumber(), QStringLiteral("SECOND"));
    }

    void settingOfOneCameraLeavesTheOtherAlone()
    {
        Link first;
        Link second;
        QVERIFY(second.program.setCameraView(60));
        QCOMPARE(second.camera.value("CameraView"), 60);
        QCOMPARE(first.camera.value("CameraView"), 120);
        QCOMPARE(first.program.getCameraView(), 120);
    }

    void firmwareVersionIsNumbersJoinedByDots()
    {
        Link link{{"firmware", "1.2.10"}};
        QCOMPARE(link.program.getFirmwareVersion(), QStringLiteral("1.2.10"));
    }

    void firmwareVersionByteAboveSevenBitsReadsAsTenDigits()
    {
        Link link{{"firmware", "1.128"}};
        QCOMPARE(link.program.getFirmwareVersion(), QStringLiteral("1.4294967168"));
    }

    void videoFormatIsReadWithSizeAndStreamFlag()
    {
        Link link;
        link.camera.setValue("width", 3840);
        link.camera.setValue("height", 2160);
        QMap<QString, int> format;
        QVERIFY(link.program.getResolution(format));
        QCOMPARE(format, (QMap<QString, int>{{"width", 3840}, {"height", 2160}, {"streamon", 0}}));
    }

    void storingKeepsTheSettingsOverAPowerCycle()
    {
        Link link{{"volatile", "1"}};
        QVERIFY(link.program.setCameraView(90));
        QVERIFY(link.program.saveDeviceParam());
        QCOMPARE(link.camera.value("stored.CameraView"), 90);
        const auto request = link.camera.lastRequest();
        QCOMPARE(static_cast<int>(request.command), 0x5100);
        QCOMPARE(request.dataStatus, 1U);
        QCOMPARE(request.dataLength, 0U);
        QVERIFY(request.payload.empty());

        QVERIFY(link.program.setCameraView(60));
        link.camera.unplug();
        link.camera.plug();
        link.program.setCurrentDevicePath(link.camera.hidPath());
        QVERIFY(link.program.initHid());
        QCOMPARE(link.program.getCameraView(), 90);
    }

    void connectionProbeTellsWhatTheCameraReports()
    {
        PluggedCamera camera;
        const QByteArray path = camera.hidPath().toUtf8();
        QVERIFY(UVCHid::getCameraConnectionStatus(path.constData(), 0xB206, 0xB215));
        camera.setValue("probe", 1);
        QVERIFY(!UVCHid::getCameraConnectionStatus(path.constData(), 0xB206, 0xB215));
        QCOMPARE(static_cast<int>(camera.lastRequest().command), 0x5000);
    }

    void connectionProbeOfAPathThatIsNotThereFails()
    {
        PluggedCamera camera;
        QVERIFY(!UVCHid::getCameraConnectionStatus("/dev/hidraw77", 0xB206, 0xB215));
        QVERIFY(!UVCHid::getCameraConnectionStatus("", 0xB206, 0xB215));
    }

    void linkNeedsACameraAndAPathThatOpens()
    {
        UVCCamera program;
        {
            PluggedCamera other{{"vid", "1111"}};
            program.setCurrentDevicePath(other.hidPath());
            QVERIFY(!program.initHid());
        }
        PluggedCamera camera;
        program.setCurrentDevicePath(QStringLiteral("/dev/hidraw77"));
        QVERIFY(!program.initHid());
        program.setCurrentDevicePath(camera.hidPath());
        QVERIFY(program.initHid());
    }

    void everyExchangeOpensTheInterfaceForItselfAndClosesIt()
    {
        Link link;
        QVERIFY(link.camera.waitFor("hid=1"));
        const auto before = link.camera.handles().hidTotal;
        link.program.getCameraView();
        link.program.setCameraView(90);
        QMap<QString, int> format;
        link.program.getResolution(format);
        link.program.saveDeviceParam();
        QVERIFY(link.camera.waitFor("hid=1"));
        QCOMPARE(link.camera.handles().hidTotal, before + 4);
    }

    void newLinkClosesTheOneBefore()
    {
        Link link;
        for (int i = 0; i < 5; ++i)
            QVERIFY(link.program.initHid());
        QVERIFY(link.camera.waitFor("hid=1"));
    }

    void cameraObjectTakesItsLinkAlong()
    {
        PluggedCamera camera;
        {
            UVCCamera program;
            program.setCurrentDevicePath(camera.hidPath());
            QVERIFY(program.initHid());
            QVERIFY(camera.waitFor("hid=1"));
        }
        QVERIFY(camera.isReleased());
    }

    void twoProgramsAtOneCameraTakeEachItsOwnAnswers()
    {
        Link link{{"serial", "SHARED"}};
        UVCCamera other;
        other.setCurrentDevicePath(link.camera.hidPath());
        QVERIFY(other.initHid());
        for (int i = 0; i < 20; ++i) {
            QCOMPARE(link.program.getCameraView(), 120);
            QCOMPARE(other.getSerialNumber(), QStringLiteral("SHARED"));
        }
    }

    void manyExchangesInARowAllSucceed()
    {
        Link link;
        for (int i = 0; i < 300; ++i) {
            QVERIFY(link.program.setPickupSensitivity(i % 4));
            QCOMPARE(link.program.getPickupSensitivity(), i % 4);
        }
        QCOMPARE(link.camera.stats().violations, 0U);
        QVERIFY(link.camera.waitFor("hid=1"));
    }
};

QTEST_GUILESS_MAIN(ExchangeTest)
#include "ExchangeTest.moc"
