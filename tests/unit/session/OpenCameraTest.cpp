#include "OpenCamera.h"
#include "CameraHandle.h"
#include "HidTest.h"
#include "ParameterKeys.h"
#include "RecordingCaptureGraph.h"
#include "TestApplication.h"
#include "UVCCamera.h"

namespace {

DeviceWidgetInfo recordOf(const QString& hidPath)
{
    DeviceWidgetInfo info;
    info.hidPath = hidPath;
    return info;
}

class OpenCameraTest : public HidTest
{
protected:
    OpenCameraTest()
    {
        hidapi.plugIn(HidTest::camera("/dev/hidraw0"));
        hidapi.plugIn(HidTest::camera("/dev/hidraw1"));
    }
    void TearDown() override
    {
        open.reset();
        camera.reset();
        CameraHandle::instance().setCurrentDevice({});
        HidTest::TearDown();
    }

    TestApplication application;
    const DeviceWidgetInfo a = recordOf(QStringLiteral("/dev/hidraw0"));
    const DeviceWidgetInfo b = recordOf(QStringLiteral("/dev/hidraw1"));
    std::unique_ptr<UVCCamera> camera = std::make_unique<UVCCamera>(
        std::make_unique<RecordingCaptureGraph>(std::make_shared<CaptureScript>()));
    std::unique_ptr<OpenCamera> open = std::make_unique<OpenCamera>(*camera);
};

} // namespace

TEST_F(OpenCameraTest, NoCameraIsOpenAtFirst)
{
    EXPECT_FALSE(open->session().isOpen());
    open->leave();
    EXPECT_FALSE(open->session().isOpen());
}

TEST_F(OpenCameraTest, NothingOfOneCameraReachesTheNext)
{
    open->open(a);
    open->session().loadParameters();
    open->session().parameters().edited()[ParameterKeys::CameraView] = 90;
    open->open(b);
    EXPECT_EQ(open->session().info().hidPath, b.hidPath);
    EXPECT_FALSE(open->session().areValuesKnown());
    EXPECT_TRUE(open->session().parameters().edited().isEmpty());
    EXPECT_TRUE(open->session().parameters().isSameData());
}

TEST_F(OpenCameraTest, DeferredStepsRunBeforeAnotherCameraIsOpened)
{
    open->open(a);
    QString reached;
    open->session().defer(100000, [&] { reached = open->session().info().hidPath; });
    open->open(b);
    EXPECT_EQ(reached, a.hidPath);
}

TEST_F(OpenCameraTest, LeavingRunsDeferredStepsAndClosesTheLink)
{
    open->open(a);
    ASSERT_TRUE(open->session().openLink());
    int handles = -1;
    open->session().defer(100000, [&] { handles = hidapi.openHandles(); });
    open->leave();
    EXPECT_EQ(handles, 1);
    EXPECT_EQ(hidapi.openHandles(), 0);
    EXPECT_FALSE(open->session().isOpen());
    EXPECT_EQ(CameraHandle::instance().currentDevice().hidPath, QString());
}

TEST_F(OpenCameraTest, CameraThatLeavesTheBusDropsDeferredSteps)
{
    open->open(a);
    ASSERT_TRUE(open->session().openLink());
    bool ran = false;
    open->session().defer(100000, [&ran] { ran = true; });
    open->drop();
    EXPECT_FALSE(ran);
    EXPECT_EQ(hidapi.openHandles(), 0);
    EXPECT_FALSE(open->session().isOpen());
}
