#include "CameraSession.h"
#include "CacheHome.h"
#include "HidTest.h"
#include "ParameterKeys.h"
#include "RecordingCaptureGraph.h"
#include "TestApplication.h"
#include "UVCCamera.h"

using namespace ParameterKeys;

namespace {

constexpr const char* kPath = "/dev/hidraw3";

class CameraSessionTest : public HidTest
{
protected:
    CameraSessionTest()
    {
        DeviceWidgetInfo info;
        info.hidPath = QString::fromLatin1(kPath);
        info.path = QStringLiteral("/dev/video0");
        hidapi.plugIn(HidTest::camera(kPath));
        session = std::make_unique<CameraSession>(*camera, info);
    }
    void TearDown() override
    {
        session.reset();
        camera.reset();
        HidTest::TearDown();
    }

    void answer(std::uint16_t cmd, const char* payload)
    {
        hidapi.respondTo(cmd, {QByteArray::fromHex(payload)});
    }

    TestApplication application;
    CacheHome cache;
    std::unique_ptr<UVCCamera> camera = std::make_unique<UVCCamera>(
        std::make_unique<RecordingCaptureGraph>(std::make_shared<CaptureScript>()));
    std::unique_ptr<CameraSession> session;
};

} // namespace

TEST_F(CameraSessionTest, IsOpenOnlyWithAHidPath)
{
    EXPECT_TRUE(session->isOpen());
    EXPECT_FALSE(CameraSession(*camera, DeviceWidgetInfo()).isOpen());
}

TEST_F(CameraSessionTest, IdentityComesFromTheCamera)
{
    answer(0x5001, "010005");
    hidapi.respondTo(0x5010, {QByteArray("SVAA009500551")});
    session->refreshIdentity();
    EXPECT_EQ(session->info().deviceVersion, QStringLiteral("1.0.5"));
    EXPECT_EQ(session->info().sn, QStringLiteral("SVAA009500551"));
}

TEST_F(CameraSessionTest, IdentityOfACameraThatDoesNotOpenIsEmpty)
{
    hidapi.setOpenRule([](const QByteArray&) { return false; });
    session->refreshIdentity();
    EXPECT_EQ(session->info().deviceVersion, QString());
    EXPECT_EQ(session->info().sn, QString());
}

TEST_F(CameraSessionTest, SettingsOfTheCameraAreReadInTheirOrder)
{
    ASSERT_TRUE(session->openLink());
    hidapi.forgetCalls();
    for (const auto& [code, value] :
         {std::pair(0x5080, "01"), std::pair(0x5040, "00"), std::pair(0x5030, "01"),
          std::pair(0x5070, "32"), std::pair(0x50A0, "5a"), std::pair(0x5090, "01")})
        answer(static_cast<std::uint16_t>(code), value);
    session->readDeviceParam();

    QList<int> codes;
    for (const QByteArray& frame : hidapi.writtenFrames())
        codes << (static_cast<quint8>(frame.at(3)) | (static_cast<quint8>(frame.at(4)) << 8));
    EXPECT_EQ(codes, (QList<int>{0x5080, 0x5040, 0x5030, 0x5070, 0x50A0, 0x5090}));

    const QMap<QString, int> expected{
        {AutoFrameSwitch, 1}, {FrameMaster, 0},      {AutoFrameMode, 1}, {PickupSensitivity, 50},
        {CameraView, 90},     {HorizontalMirror, 1}, {Intelligent, 1}};
    EXPECT_EQ(session->parameters().stored(), expected);
    EXPECT_EQ(session->parameters().edited(), expected);
}

TEST_F(CameraSessionTest, ParametersAreLoadedOnceAndForgottenOnRequest)
{
    EXPECT_FALSE(session->areParametersLoaded());
    EXPECT_FALSE(session->areValuesKnown());
    session->loadParameters();
    EXPECT_TRUE(session->areParametersLoaded());
    EXPECT_TRUE(session->areValuesKnown());
    session->forgetParameters();
    EXPECT_FALSE(session->areParametersLoaded());
    EXPECT_FALSE(session->areValuesKnown());
    EXPECT_TRUE(session->parameters().stored().isEmpty());
    EXPECT_TRUE(session->parameters().edited().isEmpty());
}

TEST_F(CameraSessionTest, StreamKeepsTheAnswerOfACameraThatFallsSilent)
{
    QByteArray format(36, '\0');
    format.replace(0, 8, QByteArray::fromHex("000f000070080000")); // 3840 x 2160
    format[32] = '\1';
    hidapi.respondTo(0x5020, {format});
    EXPECT_TRUE(session->refreshStream());
    EXPECT_TRUE(session->is4kInUse());
    EXPECT_FALSE(session->was4kInUse());
    EXPECT_EQ(session->stream().streamOn, 1);

    hidapi.queueReadResult(0);
    EXPECT_FALSE(session->refreshStream());
    EXPECT_TRUE(session->is4kInUse());
    EXPECT_TRUE(session->refreshStream());
    EXPECT_TRUE(session->was4kInUse());
}

TEST_F(CameraSessionTest, CameraIsNotAskedInThisOpeningAfterTwoLostReads)
{
    answer(0x5070, "32");
    hidapi.respondTo(0x5020, {QByteArray(36, '\0')});
    hidapi.respondTo(0x5001, {QByteArray(1, '\1')});
    ASSERT_TRUE(session->openLink());
    hidapi.queueReadResult(0);
    EXPECT_EQ(session->readSetting(DeviceSetting::PickupSensitivity), std::nullopt);
    EXPECT_EQ(session->readSetting(DeviceSetting::PickupSensitivity), 50); // starts the count anew
    hidapi.queueReadResult(0);
    hidapi.queueReadResult(-1);
    EXPECT_EQ(session->readSetting(DeviceSetting::PickupSensitivity), std::nullopt);
    EXPECT_FALSE(session->refreshStream());
    hidapi.forgetCalls();
    EXPECT_EQ(session->readSetting(DeviceSetting::PickupSensitivity), std::nullopt);
    EXPECT_FALSE(session->refreshStream());
    EXPECT_EQ(hidapi.writtenFrames(), QList<QByteArray>());

    session->refreshIdentity();
    EXPECT_EQ(session->readSetting(DeviceSetting::PickupSensitivity), 50);
    EXPECT_TRUE(session->refreshStream());
}

TEST_F(CameraSessionTest, DeferredStepsRunInTheirOrderAndOnce)
{
    QList<int> steps;
    session->defer(100000, [&steps] { steps << 1; });
    session->defer(10, [&steps, this] {
        steps << 2;
        session->defer(10, [&steps] { steps << 3; });
    });
    session->flushDeferred();
    EXPECT_EQ(steps, (QList<int>{1, 2, 3}));
    session->flushDeferred();
    EXPECT_EQ(steps.size(), 3);
}
