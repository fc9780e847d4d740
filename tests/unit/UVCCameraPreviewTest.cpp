#include "HidTest.h"
#include "RecordingCaptureGraph.h"
#include "UVCCamera.h"

#include <atomic>
#include <QCoreApplication>
#include <thread>
#include <vector>

namespace {

constexpr WId kWindow = 77;
const QString kDevice = QStringLiteral("/dev/video0#vid_b206&pid_b215#1-2");

const QStringList kReleaseSteps{"stop", "hideVideoWindow", "clearNotifyWindow", "release"};

QStringList buildSteps(const QString& format = "Rgb32", const QString& device = kDevice,
                       WId window = kWindow)
{
    return {"createSampleGrabber",
            QStringLiteral("bindCaptureSource(%1)").arg(device),
            "addFilters",
            "screenColourDepth",
            QStringLiteral("setGrabberFormat(%1)").arg(format),
            QStringLiteral("renderPreview(%1)").arg(window),
            "connectedFrameSize",
            "installCallback"};
}

class UVCCameraPreview : public HidTest
{
protected:
    void SetUp() override
    {
        camera = std::make_unique<UVCCamera>(std::make_unique<RecordingCaptureGraph>(script));
        created = script->takeSteps();
    }

    void TearDown() override
    {
        camera.reset();
        HidTest::TearDown();
    }

    void expectEmpty() const
    {
        EXPECT_FALSE(camera->isOpened());
        EXPECT_FALSE(camera->isRunning());
    }

    /// Opens the device and clears the recorded steps.
    void open()
    {
        ASSERT_TRUE(camera->openDevice(kDevice, kWindow));
        script->steps.clear();
    }

    std::shared_ptr<CaptureScript> script = std::make_shared<CaptureScript>();
    std::unique_ptr<UVCCamera> camera;
    QStringList created;
};

/// The GUI thread gets what the streaming thread reports.
class UVCCameraFailingStream : public UVCCameraPreview
{
private:
    char m_name[5] = "test";
    int m_argc = 1;
    char* m_argv[2] = {m_name, nullptr};
    QCoreApplication m_application{m_argc, m_argv};
};

class UVCCameraFailingStep : public UVCCameraPreview,
                             public ::testing::WithParamInterface<const char*>
{
};

struct DepthCase
{
    int depth;
    const char* format;
};

class UVCCameraScreenDepth : public UVCCameraPreview,
                             public ::testing::WithParamInterface<DepthCase>
{
};

class UVCCameraOddDepth : public UVCCameraPreview, public ::testing::WithParamInterface<int>
{
};

} // namespace

TEST_F(UVCCameraPreview, StartsWithAnEmptyGraph)
{
    EXPECT_EQ(created, QStringList{"create"});
    expectEmpty();
    EXPECT_EQ(camera->width(), 0);
    EXPECT_EQ(camera->height(), 0);
    EXPECT_EQ(camera->currentDevicePath(), "");
}

TEST_F(UVCCameraPreview, GraphThatCannotBeCreatedShowsWhenTheDeviceIsOpened)
{
    script->failing = {"create", "createSampleGrabber"};
    UVCCamera other(std::make_unique<RecordingCaptureGraph>(script));
    EXPECT_FALSE(other.openDevice(kDevice, kWindow));
}

TEST_F(UVCCameraPreview, GraphThatCouldNotBeCreatedIsCreatedWhenTheDeviceIsOpened)
{
    script->failing = {"create"};
    camera->closeDevice();
    script->steps.clear();
    script->failing.clear();
    EXPECT_TRUE(camera->openDevice(kDevice, kWindow));
    EXPECT_EQ(script->takeSteps(), kReleaseSteps + QStringList{"create"} + buildSteps());
}

TEST_F(UVCCameraPreview, OpeningTakesEveryStepInOrder)
{
    EXPECT_TRUE(camera->openDevice(kDevice, kWindow));
    EXPECT_EQ(script->steps, buildSteps());
    EXPECT_TRUE(camera->isOpened());
    EXPECT_FALSE(camera->isRunning());
    EXPECT_EQ(camera->width(), 1280);
    EXPECT_EQ(camera->height(), 720);
    EXPECT_EQ(camera->currentDevicePath(), kDevice);
}

TEST_F(UVCCameraPreview, OpeningLogsItsTwoSteps)
{
    camera->openDevice(kDevice, kWindow);
    EXPECT_EQ(log.texts(), (QStringList{"openDevice", "setResolution"}));
}

TEST_F(UVCCameraPreview, OpeningWithoutADeviceLogsOnlyItself)
{
    script->failing = {"bindCaptureSource"};
    camera->openDevice(kDevice, kWindow);
    EXPECT_EQ(log.texts(), QStringList{"openDevice"});
}

TEST_F(UVCCameraPreview, CallbackKnowsTheFrameSizeBeforeTheFirstFrame)
{
    open();
    ASSERT_NE(script->callback, nullptr);
    EXPECT_EQ(script->callback->frameSize(), QSize(1280, 720));
}

TEST_P(UVCCameraFailingStep, EndsTheOpening)
{
    const QString failing = QString::fromLatin1(GetParam());
    script->failing = {failing};
    EXPECT_FALSE(camera->openDevice(kDevice, kWindow));

    QStringList expected;
    for (const QString& step : buildSteps()) {
        expected << step;
        if (step.startsWith(failing))
            break;
    }
    expected << kReleaseSteps << "create";
    EXPECT_EQ(script->takeSteps(), expected);
    expectEmpty();
    EXPECT_EQ(camera->width(), 0);
    EXPECT_EQ(camera->height(), 0);
    EXPECT_EQ(camera->currentDevicePath(), kDevice);
    EXPECT_FALSE(camera->startCapture());
}

TEST_P(UVCCameraFailingStep, HasACauseUntilTheNextOpening)
{
    script->failing = {QString::fromLatin1(GetParam())};
    script->failure = {PreviewFailure::Cause::PartMissing, "part"};
    EXPECT_FALSE(camera->openDevice(kDevice, kWindow));
    EXPECT_EQ(camera->lastFailure().cause, PreviewFailure::Cause::PartMissing);
    EXPECT_EQ(camera->lastFailure().detail, "part");

    script->failing.clear();
    EXPECT_TRUE(camera->openDevice(kDevice, kWindow));
    EXPECT_EQ(camera->lastFailure().cause, PreviewFailure::Cause::None);
    EXPECT_EQ(camera->lastFailure().detail, "");
}

TEST_P(UVCCameraFailingStep, HasACauseAlsoWhenThePlatformTellsNone)
{
    script->failing = {QString::fromLatin1(GetParam())};
    EXPECT_FALSE(camera->openDevice(kDevice, kWindow));
    EXPECT_EQ(camera->lastFailure().cause, PreviewFailure::Cause::Other);
}

TEST_P(UVCCameraFailingStep, DoesNotPreventALaterOpening)
{
    script->failing = {QString::fromLatin1(GetParam())};
    EXPECT_FALSE(camera->openDevice(kDevice, kWindow));
    script->failing.clear();
    EXPECT_TRUE(camera->openDevice(kDevice, kWindow));
    EXPECT_TRUE(camera->startCapture());
}

TEST_P(UVCCameraFailingStep, OfAReopeningLeavesNoPreview)
{
    open();
    ASSERT_TRUE(camera->startCapture());
    script->failing = {QString::fromLatin1(GetParam())};
    EXPECT_FALSE(camera->openDevice(kDevice, kWindow));
    expectEmpty();
}

INSTANTIATE_TEST_SUITE_P(Steps, UVCCameraFailingStep,
                         ::testing::Values("createSampleGrabber", "bindCaptureSource", "addFilters",
                                           "setGrabberFormat", "renderPreview",
                                           "connectedFrameSize"),
                         [](const auto& test) { return std::string(test.param); });

TEST_P(UVCCameraScreenDepth, ChoosesTheFrameFormat)
{
    script->screenColourDepth = GetParam().depth;
    EXPECT_TRUE(camera->openDevice(kDevice, kWindow));
    EXPECT_EQ(script->steps, buildSteps(GetParam().format));
    EXPECT_TRUE(camera->isOpened());
}

INSTANTIATE_TEST_SUITE_P(Depths, UVCCameraScreenDepth,
                         ::testing::Values(DepthCase{8, "Rgb8"}, DepthCase{16, "Rgb555"},
                                           DepthCase{24, "Rgb24"}, DepthCase{32, "Rgb32"}),
                         [](const auto& test) { return std::string(test.param.format); });

TEST_P(UVCCameraOddDepth, OpensWithNothingBuilt)
{
    script->screenColourDepth = GetParam();
    EXPECT_TRUE(camera->openDevice(kDevice, kWindow));
    EXPECT_EQ(script->takeSteps(), buildSteps().mid(0, 4));
    expectEmpty();
    EXPECT_EQ(camera->width(), 0);
    EXPECT_FALSE(camera->startCapture());
    EXPECT_EQ(script->steps, QStringList());
}

INSTANTIATE_TEST_SUITE_P(Depths, UVCCameraOddDepth,
                         ::testing::Values(0, 1, 4, 15, 23, 30, 48, 64, -1));

TEST_F(UVCCameraPreview, ReopeningGivesTheOldGraphUpFirst)
{
    open();
    ASSERT_TRUE(camera->startCapture());
    script->steps.clear();
    script->frameSize = QSize(640, 480);
    EXPECT_TRUE(camera->openDevice("other", 5));
    EXPECT_EQ(script->steps,
              kReleaseSteps + QStringList{"create"} + buildSteps("Rgb32", "other", 5));
    EXPECT_TRUE(camera->isOpened());
    EXPECT_FALSE(camera->isRunning());
    EXPECT_EQ(camera->width(), 640);
    EXPECT_EQ(camera->height(), 480);
    EXPECT_EQ(script->callback->frameSize(), QSize(640, 480));
}

TEST_F(UVCCameraPreview, StartingBeforeOpeningFails)
{
    EXPECT_FALSE(camera->startCapture());
    EXPECT_EQ(script->steps, QStringList());
    EXPECT_FALSE(camera->isRunning());
}

TEST_F(UVCCameraPreview, StartingPlacesTheWindowThenRuns)
{
    open();
    EXPECT_TRUE(camera->startCapture());
    EXPECT_EQ(script->steps, (QStringList{"placeVideoWindow(77)", "run"}));
    EXPECT_TRUE(camera->isRunning());
}

TEST_F(UVCCameraPreview, RunningPictureFitsItsWindowAgain)
{
    camera->fitVideoWindow();
    open();
    camera->fitVideoWindow(); // it is placed at the start
    EXPECT_EQ(script->steps, QStringList());
    ASSERT_TRUE(camera->startCapture());
    script->steps.clear();
    camera->fitVideoWindow();
    EXPECT_EQ(script->takeSteps(), QStringList{"fitVideoWindow(77)"});
    camera->stopCapture();
    script->steps.clear();
    camera->fitVideoWindow();
    EXPECT_EQ(script->steps, QStringList());
}

TEST_F(UVCCameraPreview, CameraThatDoesNotStreamFailsToStart)
{
    open();
    script->failing = {"run"};
    script->failure = {PreviewFailure::Cause::InUse, "other"};
    EXPECT_FALSE(camera->startCapture());
    EXPECT_FALSE(camera->isRunning());
    EXPECT_TRUE(camera->isOpened());
    EXPECT_EQ(camera->lastFailure().cause, PreviewFailure::Cause::InUse);
    EXPECT_EQ(camera->lastFailure().detail, "other");

    script->failing.clear();
    EXPECT_TRUE(camera->startCapture());
    EXPECT_EQ(camera->lastFailure().cause, PreviewFailure::Cause::None);
    EXPECT_TRUE(camera->isRunning());
}

TEST_F(UVCCameraFailingStream, IsStoppedAndReportedOnce)
{
    open();
    ASSERT_TRUE(camera->startCapture());
    int reports = 0;
    QObject::connect(camera.get(), &UVCCamera::sigCaptureFailed, [&reports] { ++reports; });
    script->steps.clear();
    script->hasFailed = true;
    script->failure.cause = PreviewFailure::Cause::Gone;
    std::thread([this] {
        script->callback->captureFailed();
        script->callback->captureFailed();
    }).join();
    EXPECT_EQ(reports, 0);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(reports, 1);
    EXPECT_EQ(camera->lastFailure().cause, PreviewFailure::Cause::Gone);
    EXPECT_EQ(script->steps, (QStringList{"stop", "hideVideoWindow"}));
    EXPECT_FALSE(camera->isRunning());
    EXPECT_TRUE(camera->isOpened());
}

TEST_F(UVCCameraFailingStream, DoesNotStopTheNextOne)
{
    open();
    ASSERT_TRUE(camera->startCapture());
    script->callback->captureFailed();
    camera->stopCapture();
    ASSERT_TRUE(camera->startCapture());
    QCoreApplication::sendPostedEvents();
    EXPECT_TRUE(camera->isRunning());
}

TEST_F(UVCCameraPreview, StoppingStopsThenHidesAndKeepsThePreview)
{
    open();
    ASSERT_TRUE(camera->startCapture());
    script->steps.clear();
    camera->stopCapture();
    EXPECT_EQ(script->takeSteps(), (QStringList{"stop", "hideVideoWindow"}));
    EXPECT_FALSE(camera->isRunning());
    EXPECT_TRUE(camera->isOpened());

    EXPECT_TRUE(camera->startCapture());
    EXPECT_EQ(script->steps, (QStringList{"placeVideoWindow(77)", "run"}));
}

TEST_F(UVCCameraPreview, StoppingWithoutAPreviewTouchesNothing)
{
    camera->stopCapture();
    EXPECT_EQ(script->steps, QStringList());
}

TEST_F(UVCCameraPreview, ClosingGivesTheGraphUpAndMakesAnEmptyOne)
{
    open();
    ASSERT_TRUE(camera->startCapture());
    script->steps.clear();
    camera->closeDevice();
    EXPECT_EQ(script->takeSteps(), kReleaseSteps + QStringList{"create"});
    expectEmpty();
    EXPECT_FALSE(camera->startCapture());

    // Nothing was built, so there is nothing to release first.
    EXPECT_TRUE(camera->openDevice(kDevice, kWindow));
    EXPECT_EQ(script->steps, buildSteps());
}

TEST_F(UVCCameraPreview, HelperIsGivenUpBeforeItsSource)
{
    open();
    camera->initVideoProcAmp();
    script->steps.clear();
    camera->closeDevice();
    EXPECT_EQ(script->steps, (QStringList{"stop", "hideVideoWindow", "clearNotifyWindow",
                                          "dropVideoProcAmp", "release", "create"}));
}

TEST_F(UVCCameraPreview, EndOfTheCameraGivesEverythingUp)
{
    open();
    ASSERT_TRUE(camera->startCapture());
    camera->initVideoProcAmp();
    script->steps.clear();
    camera.reset();
    EXPECT_EQ(script->steps, (QStringList{"stop", "hideVideoWindow", "clearNotifyWindow",
                                          "dropVideoProcAmp", "release", "dropGraph"}));
}

TEST_F(UVCCameraPreview, FramesReachTheReceiverOnTheStreamingThreadUncopied)
{
    open();
    const std::vector<unsigned char> buffer(std::size_t{1280} * 720 * 4, 0x40);
    const uchar* bits = nullptr;
    QSize size;
    std::thread::id receiver;
    QObject::connect(camera.get(), &UVCCamera::sigImage, [&](const QImage& image) {
        bits = image.constBits();
        size = image.size();
        receiver = std::this_thread::get_id();
    });

    std::thread::id streamer;
    bool delivered = false;
    std::thread([&] {
        streamer = std::this_thread::get_id();
        delivered =
            script->callback->bufferCallback(0.0, buffer.data(), static_cast<long>(buffer.size()));
    }).join();

    EXPECT_TRUE(delivered);
    EXPECT_EQ(bits, buffer.data());
    EXPECT_EQ(size, QSize(1280, 720));
    EXPECT_EQ(receiver, streamer);
}

TEST_F(UVCCameraPreview, CallbackLivesUntilTheGraphIsGone)
{
    open();
    const std::vector<unsigned char> buffer(std::size_t{1280} * 720 * 4, 0x40);
    int lateFrames = 0;
    script->onRelease = [&] {
        lateFrames +=
            script->callback->bufferCallback(0.0, buffer.data(), static_cast<long>(buffer.size()));
    };
    camera.reset();
    EXPECT_EQ(lateFrames, 1);
}
