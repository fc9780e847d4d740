#include "HidTest.h"
#include "RecordingCaptureGraph.h"
#include "UVCCamera.h"

namespace {

constexpr const char* kPath = "/dev/hidraw3";

struct Reader
{
    const char* name;
    int (UVCCamera::*read)();
    std::uint16_t cmd;
};

struct Writer
{
    const char* name;
    bool (UVCCamera::*write)(int);
    std::uint16_t cmd;
};

void PrintTo(const Reader& reader, std::ostream* out)
{
    *out << reader.name;
}

void PrintTo(const Writer& writer, std::ostream* out)
{
    *out << writer.name;
}

int commandOf(const QByteArray& frame)
{
    return static_cast<quint8>(frame.at(3)) | (static_cast<quint8>(frame.at(4)) << 8);
}

class UVCCameraSettings : public HidTest
{
protected:
    void TearDown() override
    {
        camera.reset();
        HidTest::TearDown();
    }

    void link()
    {
        hidapi.plugIn(HidTest::camera(kPath));
        camera->setCurrentDevicePath(kPath);
        ASSERT_TRUE(camera->initHid());
        hidapi.forgetCalls();
        log.clear();
    }

    /// The only frame that was written, because a command is one exchange.
    QByteArray onlyFrame() const
    {
        const QList<QByteArray> frames = hidapi.writtenFrames();
        EXPECT_EQ(frames.size(), 1);
        return frames.isEmpty() ? QByteArray(1024, '\0') : frames.first();
    }

    void expectNeutral()
    {
        hidapi.forgetCalls();
        QMap<QString, int> map{{"width", 5}};
        EXPECT_EQ(camera->getCameraView(), 0);
        EXPECT_EQ(camera->getSerialNumber(), "");
        EXPECT_EQ(camera->getFirmwareVersion(), "");
        EXPECT_FALSE(camera->getResolution(map));
        EXPECT_EQ(map, (QMap<QString, int>{{"width", 5}}));
        EXPECT_FALSE(camera->setCameraView(60));
        EXPECT_FALSE(camera->saveDeviceParam());
        EXPECT_EQ(hidapi.calls(), QStringList());
    }

    std::unique_ptr<UVCCamera> camera = std::make_unique<UVCCamera>(
        std::make_unique<RecordingCaptureGraph>(std::make_shared<CaptureScript>()));
};

class UVCCameraReader : public UVCCameraSettings, public ::testing::WithParamInterface<Reader>
{
protected:
    int read() { return (camera.get()->*GetParam().read)(); }
};

class UVCCameraWriter : public UVCCameraSettings, public ::testing::WithParamInterface<Writer>
{
protected:
    bool write(int value) { return (camera.get()->*GetParam().write)(value); }
};

} // namespace

// --- The link

TEST_F(UVCCameraSettings, LinkOpensTheCurrentDevicePath)
{
    hidapi.plugIn(HidTest::camera("/dev/hidraw1"));
    camera->setCurrentDevicePath(kPath);
    EXPECT_EQ(camera->currentDevicePath(), kPath);
    EXPECT_TRUE(camera->initHid());
    EXPECT_EQ(hidapi.calls().last(), "hid_open_path(/dev/hidraw3)");
    EXPECT_EQ(log.texts().last(), R"(UVCCamera::initHid m_currentDevicePath = "/dev/hidraw3")");
    EXPECT_FALSE(log.contains("Create hid handle failed."));
}

TEST_F(UVCCameraSettings, SecondLinkClosesTheFirstBeforeItOpens)
{
    link();
    ASSERT_TRUE(camera->initHid());
    EXPECT_EQ(hidapi.calls(),
              (QStringList{"hid_close(#1)", "hid_exit()", "hid_enumerate(0, 0)",
                           "hid_free_enumeration()", "hid_init()", "hid_open_path(/dev/hidraw3)"}));
    EXPECT_EQ(hidapi.openHandles(), 1);
}

TEST_F(UVCCameraSettings, LinkWithoutACameraFailsAndIsLogged)
{
    camera->setCurrentDevicePath(kPath);
    EXPECT_FALSE(camera->initHid());
    EXPECT_EQ(log.texts(),
              (QStringList{R"(In device path:  "/dev/hidraw3")",
                           R"(UVCCamera::initHid m_currentDevicePath = "/dev/hidraw3")",
                           "Create hid handle failed."}));
    expectNeutral();
}

TEST_F(UVCCameraSettings, FailedLinkEndsThePreviousOne)
{
    link();
    hidapi.unplugAll();
    EXPECT_FALSE(camera->initHid());
    EXPECT_EQ(log.texts().last(), "Create hid handle failed.");
    EXPECT_EQ(hidapi.openHandles(), 0);
    expectNeutral();
}

TEST_F(UVCCameraSettings, LinkToAPathThatCannotBeOpenedFails)
{
    hidapi.plugIn(HidTest::camera(kPath));
    hidapi.setOpenRule([](const QByteArray&) { return false; });
    camera->setCurrentDevicePath(kPath);
    EXPECT_FALSE(camera->initHid());
    EXPECT_EQ(log.texts(QtCriticalMsg), QStringList{"Open device hid failed."});
    EXPECT_EQ(log.texts().last(), "Create hid handle failed.");
    hidapi.setOpenRule([](const QByteArray&) { return true; });
    expectNeutral();
}

TEST_F(UVCCameraSettings, WithoutALinkEveryCommandIsNeutral)
{
    expectNeutral();
}

TEST_F(UVCCameraSettings, LinkKeepsItsPathWhenThePreviewOpensAnotherDevice)
{
    link();
    camera->setCurrentDevicePath("/dev/video0");
    camera->getCameraView();
    EXPECT_EQ(hidapi.calls().at(1), "hid_open_path(/dev/hidraw3)");
}

TEST_F(UVCCameraSettings, LinkIsIndependentOfThePreview)
{
    link();
    camera->openDevice("device", 1);
    camera->closeDevice();
    hidapi.respondTo(0x50A0, {QByteArray(1, 90)});
    EXPECT_EQ(camera->getCameraView(), 90);
}

TEST_F(UVCCameraSettings, EndOfTheCameraClosesTheLink)
{
    link();
    camera.reset();
    EXPECT_EQ(hidapi.calls(), (QStringList{"hid_close(#1)", "hid_exit()"}));
}

// --- Readers

TEST_P(UVCCameraReader, AsksWithItsOwnCommand)
{
    link();
    hidapi.respondTo(GetParam().cmd, {QByteArray(1, 90)});
    EXPECT_EQ(read(), 90);
    EXPECT_EQ(commandOf(onlyFrame()), GetParam().cmd);
}

TEST_P(UVCCameraReader, NegativeValueStaysNegative)
{
    link();
    hidapi.respondTo(GetParam().cmd, {QByteArray(1, '\xFF')});
    EXPECT_EQ(read(), -1);
}

TEST_P(UVCCameraReader, EveryFailureReadsAsZero)
{
    link();
    EXPECT_EQ(read(), 0); // no answer
    hidapi.respondTo(GetParam().cmd, {QByteArray(1, 90), 1});
    EXPECT_EQ(read(), 0); // refusal
    hidapi.setOpenRule([](const QByteArray&) { return false; });
    EXPECT_EQ(read(), 0);
}

TEST_P(UVCCameraReader, WithoutALinkReadsAsZeroWithoutTouchingTheDevice)
{
    EXPECT_EQ(read(), 0);
    EXPECT_EQ(hidapi.calls(), QStringList());
}

INSTANTIATE_TEST_SUITE_P(
    Settings, UVCCameraReader,
    ::testing::Values(Reader{"AutoFrameMode", &UVCCamera::getAutoFrameMode, 0x5030},
                      Reader{"FrameMaster", &UVCCamera::getFrameMaster, 0x5040},
                      Reader{"PickupSensitivity", &UVCCamera::getPickupSensitivity, 0x5070},
                      Reader{"AutoFrameSwitch", &UVCCamera::getAutoFrameSwitch, 0x5080},
                      Reader{"HorizontalMirror", &UVCCamera::getHorizontalMirror, 0x5090},
                      Reader{"CameraView", &UVCCamera::getCameraView, 0x50A0}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(UVCCameraSettings, FirmwareVersionIsRead)
{
    link();
    hidapi.respondTo(0x5001, {QByteArray::fromHex("01020a")});
    EXPECT_EQ(camera->getFirmwareVersion(), "1.2.10");
    EXPECT_EQ(commandOf(onlyFrame()), 0x5001);
}

TEST_F(UVCCameraSettings, SerialNumberIsRead)
{
    link();
    hidapi.respondTo(0x5010, {"SN0001"});
    EXPECT_EQ(camera->getSerialNumber(), "SN0001");
    EXPECT_EQ(commandOf(onlyFrame()), 0x5010);
}

TEST_F(UVCCameraSettings, TextsOfAnInterfaceThatCannotBeOpenedAreTheNoncharacter)
{
    link();
    hidapi.setOpenRule([](const QByteArray&) { return false; });
    EXPECT_EQ(camera->getSerialNumber(), QString(QChar(0xFFFF)));
    EXPECT_EQ(camera->getFirmwareVersion(), QString(QChar(0xFFFF)));
}

TEST_F(UVCCameraSettings, ResolutionIsRead)
{
    link();
    QByteArray payload(36, '\0');
    payload[0] = '\x80';
    payload[1] = '\x07';
    payload[4] = '\x38';
    payload[5] = '\x04';
    payload[32] = '\x01';
    hidapi.respondTo(0x5020, {payload});
    QMap<QString, int> map;
    EXPECT_TRUE(camera->getResolution(map));
    EXPECT_EQ(map, (QMap<QString, int>{{"width", 1920}, {"height", 1080}, {"streamon", 1}}));
    EXPECT_EQ(commandOf(onlyFrame()), 0x5020);
}

TEST_F(UVCCameraSettings, ResolutionThatIsRefusedFails)
{
    link();
    hidapi.respondTo(0x5020, {{}, 1});
    QMap<QString, int> map;
    EXPECT_FALSE(camera->getResolution(map));
    EXPECT_TRUE(map.isEmpty());
}

TEST_F(UVCCameraSettings, ResolutionOfAnInterfaceThatCannotBeOpenedKeepsTheKnownAnswer)
{
    link();
    hidapi.setOpenRule([](const QByteArray&) { return false; });
    QMap<QString, int> map{{"width", 3840}};
    EXPECT_TRUE(camera->getResolution(map));
    EXPECT_EQ(map, (QMap<QString, int>{{"width", 3840}}));
}

// --- Writers

TEST_P(UVCCameraWriter, SendsTheValueWithItsOwnCommand)
{
    link();
    hidapi.respondTo(GetParam().cmd, {});
    EXPECT_TRUE(write(120));
    const QByteArray frame = onlyFrame();
    EXPECT_EQ(commandOf(frame), GetParam().cmd);
    EXPECT_EQ(frame.at(6), 1);
    EXPECT_EQ(frame.at(14), 120);
}

TEST_P(UVCCameraWriter, SilenceAndRefusalFail)
{
    link();
    EXPECT_FALSE(write(1));
    hidapi.respondTo(GetParam().cmd, {{}, 1});
    EXPECT_FALSE(write(1));
}

TEST_P(UVCCameraWriter, ReadErrorSucceeds)
{
    link();
    hidapi.queueReadResult(-1);
    EXPECT_TRUE(write(1));
}

TEST_P(UVCCameraWriter, InterfaceThatCannotBeOpenedFails)
{
    link();
    hidapi.setOpenRule([](const QByteArray&) { return false; });
    EXPECT_FALSE(write(1));
}

TEST_P(UVCCameraWriter, WithoutALinkFailsWithoutTouchingTheDevice)
{
    EXPECT_FALSE(write(1));
    EXPECT_EQ(hidapi.calls(), QStringList());
}

INSTANTIATE_TEST_SUITE_P(
    Settings, UVCCameraWriter,
    ::testing::Values(Writer{"AutoFrameMode", &UVCCamera::setAutoFrameMode, 0x5031},
                      Writer{"FrameMaster", &UVCCamera::setFrameMaster, 0x5041},
                      Writer{"PickupSensitivity", &UVCCamera::setPickupSensitivity, 0x5071},
                      Writer{"AutoFrameSwitch", &UVCCamera::setAutoFrameSwitch, 0x5081},
                      Writer{"HorizontalMirror", &UVCCamera::setHorizontalMirror, 0x5091},
                      Writer{"CameraView", &UVCCamera::setCameraView, 0x50A1}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(UVCCameraSettings, StoringSendsTheStoreCommandWithoutPayload)
{
    link();
    hidapi.respondTo(0x5100, {});
    EXPECT_TRUE(camera->saveDeviceParam());
    const QByteArray frame = onlyFrame();
    EXPECT_EQ(commandOf(frame), 0x5100);
    EXPECT_EQ(frame.at(5), 1);
    EXPECT_EQ(frame.mid(6, 2), QByteArray(2, '\0'));
    EXPECT_EQ(frame.mid(14), QByteArray(1010, '\0'));
}

TEST_F(UVCCameraSettings, StoringThatIsRefusedFails)
{
    link();
    hidapi.respondTo(0x5100, {{}, 1});
    EXPECT_FALSE(camera->saveDeviceParam());
}

TEST_F(UVCCameraSettings, WithoutALinkNoFirmwareIsSent)
{
    EXPECT_FALSE(camera->updateFile(QStringLiteral("firmware.bin")));
    EXPECT_EQ(hidapi.calls(), QStringList());
}
