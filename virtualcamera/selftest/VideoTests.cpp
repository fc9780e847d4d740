#include "TestCamera.h"
#include "VideoStream.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <sys/ioctl.h>
#include <sys/select.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <thread>
#include <unistd.h>

namespace virtualcamera {

namespace {

using std::chrono::milliseconds;

/// The average of the luma samples of a YUYV frame.
double brightnessOf(const std::vector<std::uint8_t>& frame)
{
    double sum = 0;
    for (std::size_t i = 0; i < frame.size(); i += 2)
        sum += frame[i];
    return sum / (static_cast<double>(frame.size()) / 2);
}

std::vector<std::uint8_t> frameAfterChange(VideoStream& stream)
{
    std::vector<std::uint8_t> frame;
    // The queued buffers may have been painted before.
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(0, stream.readFrame(frame));
    return frame;
}

/// Starts the stream, lets a thread wait for a frame and calls `interrupt`. Returns the error of
/// the wait.
int errorOfReader(VideoStream& stream, const std::function<void()>& interrupt)
{
    EXPECT_EQ(0, stream.setFormat(V4L2_PIX_FMT_YUYV, 640, 360));
    EXPECT_EQ(0, stream.start());
    int error = 0;
    std::thread reader([&] {
        std::vector<std::uint8_t> frame;
        error = stream.readFrame(frame);
    });
    std::this_thread::sleep_for(milliseconds(100));
    interrupt();
    reader.join();
    return error;
}

} // namespace

TEST(Video, StreamsYuyv)
{
    TestCamera camera;
    VideoStream stream(camera.videoNode());
    ASSERT_EQ(0, stream.setFormat(V4L2_PIX_FMT_YUYV, 1280, 720));
    ASSERT_EQ(0, stream.start());
    const auto start = std::chrono::steady_clock::now();
    std::vector<std::uint8_t> frame;
    for (int i = 0; i < 30; ++i) {
        ASSERT_TRUE(stream.waitReadable(10000));
        ASSERT_EQ(0, stream.readFrame(frame));
        ASSERT_EQ(1280U * 720 * 2, frame.size());
    }
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    EXPECT_GT(time.count(), 0.8);
    EXPECT_LT(time.count(), 2.5);
    const auto stats = camera.client.stats(camera.id());
    EXPECT_TRUE(stats.streaming);
    EXPECT_EQ("YUYV", stats.fourcc);
    EXPECT_EQ("1280", camera.client.registerValue(camera.id(), "width"));
    EXPECT_EQ("1", camera.client.registerValue(camera.id(), "streamon"));
    EXPECT_EQ(0, stream.stop());
    EXPECT_FALSE(camera.client.stats(camera.id()).streaming);
    EXPECT_EQ("0", camera.client.registerValue(camera.id(), "streamon"));
}

TEST(Video, StreamsMjpegUpTo4K)
{
    TestCamera camera;
    VideoStream stream(camera.videoNode());
    ASSERT_EQ(0, stream.setFormat(V4L2_PIX_FMT_MJPEG, 3840, 2160));
    ASSERT_EQ(0, stream.start());
    std::vector<std::uint8_t> frame;
    for (int i = 0; i < 10; ++i) {
        ASSERT_EQ(0, stream.readFrame(frame));
        ASSERT_GT(frame.size(), 10000U);
        EXPECT_EQ(0xFF, frame[0]);
        EXPECT_EQ(0xD8, frame[1]);
        EXPECT_EQ(0xD9, frame.back());
    }
    EXPECT_EQ("3840", camera.client.registerValue(camera.id(), "width"));
}

TEST(Video, SecondStreamIsBusy)
{
    TestCamera camera;
    VideoStream first(camera.videoNode());
    VideoStream second(camera.videoNode());
    ASSERT_EQ(0, first.setFormat(V4L2_PIX_FMT_YUYV, 640, 360));
    ASSERT_EQ(0, first.start());
    EXPECT_EQ(EBUSY, second.setFormat(V4L2_PIX_FMT_YUYV, 640, 360));
    EXPECT_EQ(EBUSY, second.requestBuffers(4));
    v4l2_capability capability{};
    EXPECT_EQ(0, second.control(VIDIOC_QUERYCAP, capability));
    first.stop();
    ASSERT_EQ(0, first.requestBuffers(0));
    EXPECT_EQ(0, second.setFormat(V4L2_PIX_FMT_YUYV, 640, 360));
}

TEST(Video, BusyFaultRefusesTheStream)
{
    TestCamera camera;
    camera.client.fault(camera.id(), "busy");
    VideoStream stream(camera.videoNode());
    EXPECT_EQ(EBUSY, stream.setFormat(V4L2_PIX_FMT_YUYV, 640, 360));
    camera.client.clear(camera.id());
    EXPECT_EQ(0, stream.setFormat(V4L2_PIX_FMT_YUYV, 640, 360));
}

TEST(Video, DeniedFaultRefusesNewHandles)
{
    TestCamera camera;
    const std::string node = camera.videoNode();
    VideoStream known(node);
    camera.client.fault(camera.id(), "denied");
    errno = 0;
    EXPECT_LT(::open(node.c_str(), O_RDWR | O_CLOEXEC), 0);
    EXPECT_EQ(EACCES, errno);
    v4l2_capability capability{};
    EXPECT_EQ(0, known.control(VIDIOC_QUERYCAP, capability));
    camera.client.clear(camera.id());
    VideoStream next(node);
    EXPECT_EQ(0, next.control(VIDIOC_QUERYCAP, capability));
}

TEST(Video, PollAndSelectWaitForAFrame)
{
    TestCamera camera;
    VideoStream stream(camera.videoNode());
    EXPECT_FALSE(stream.waitReadable(50));
    camera.client.fault(camera.id(), "frozen");
    ASSERT_EQ(0, stream.setFormat(V4L2_PIX_FMT_YUYV, 640, 360));
    ASSERT_EQ(0, stream.start());
    EXPECT_FALSE(stream.waitReadable(200));
    camera.client.clear(camera.id());
    fd_set set;
    FD_ZERO(&set);
    FD_SET(stream.fd(), &set);
    timeval timeout{10, 0};
    EXPECT_EQ(1, ::select(stream.fd() + 1, &set, nullptr, nullptr, &timeout));
}

TEST(Video, NonBlockingHandleDoesNotWait)
{
    TestCamera camera;
    camera.client.fault(camera.id(), "frozen");
    VideoStream stream(camera.videoNode(), O_NONBLOCK);
    ASSERT_EQ(0, stream.setFormat(V4L2_PIX_FMT_YUYV, 640, 360));
    ASSERT_EQ(0, stream.start());
    std::vector<std::uint8_t> frame;
    EXPECT_EQ(EAGAIN, stream.readFrame(frame));
}

TEST(Video, StopEndsAWaitingReader)
{
    TestCamera camera;
    camera.client.fault(camera.id(), "frozen");
    VideoStream stream(camera.videoNode());
    EXPECT_EQ(EINVAL, errorOfReader(stream, [&] { EXPECT_EQ(0, stream.stop()); }));
}

TEST(Video, UnplugEndsAWaitingReader)
{
    TestCamera camera;
    camera.client.fault(camera.id(), "frozen");
    VideoStream stream(camera.videoNode());
    EXPECT_EQ(ENODEV, errorOfReader(stream, [&] { camera.client.unplug(camera.id()); }));
    v4l2_capability capability{};
    EXPECT_EQ(ENODEV, stream.control(VIDIOC_QUERYCAP, capability));
}

TEST(Video, CopyOfTheDescriptorIsTheSameHandle)
{
    TestCamera camera;
    VideoStream stream(camera.videoNode());
    ASSERT_EQ(0, stream.setFormat(V4L2_PIX_FMT_YUYV, 640, 360));
    for (const int copy : {::dup(stream.fd()), ::fcntl(stream.fd(), F_DUPFD_CLOEXEC, 3)}) {
        ASSERT_GE(copy, 0);
        v4l2_requestbuffers request{};
        request.count = 2;
        request.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        request.memory = V4L2_MEMORY_MMAP;
        EXPECT_EQ(0, ::ioctl(copy, VIDIOC_REQBUFS, &request));
        EXPECT_EQ(2U, request.count);
        ::close(copy);
    }
    EXPECT_EQ(0, stream.start());
    EXPECT_EQ(1U, camera.client.handles(camera.id()).video);
}

TEST(Video, NodeIsACharacterDevice)
{
    TestCamera camera;
    const std::string node = camera.videoNode();
    VideoStream stream(node);
    struct stat byPath
    {
    };
    struct stat byHandle
    {
    };
    ASSERT_EQ(0, ::stat(node.c_str(), &byPath));
    ASSERT_EQ(0, ::fstat(stream.fd(), &byHandle));
    EXPECT_TRUE(S_ISCHR(byPath.st_mode));
    EXPECT_TRUE(S_ISCHR(byHandle.st_mode));
    EXPECT_EQ(byPath.st_rdev, byHandle.st_rdev);
    EXPECT_EQ(81U, major(byHandle.st_rdev));
}

TEST(Video, MetadataNodeCapturesNoVideo)
{
    TestCamera camera;
    VideoStream metadata(camera.client.nodes(camera.id()).metadata);
    v4l2_capability capability{};
    ASSERT_EQ(0, metadata.control(VIDIOC_QUERYCAP, capability));
    EXPECT_EQ(0U, capability.device_caps & V4L2_CAP_VIDEO_CAPTURE);
    EXPECT_NE(0U, capability.device_caps & V4L2_CAP_META_CAPTURE);
    v4l2_fmtdesc format{};
    format.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    EXPECT_EQ(EINVAL, metadata.control(VIDIOC_ENUM_FMT, format));
}

TEST(Video, ControlsChangeThePicture)
{
    TestCamera camera;
    VideoStream stream(camera.videoNode());
    ASSERT_EQ(0, stream.setFormat(V4L2_PIX_FMT_YUYV, 640, 360));
    ASSERT_EQ(0, stream.start());
    const double before = brightnessOf(frameAfterChange(stream));
    v4l2_control control{V4L2_CID_BRIGHTNESS, 200};
    ASSERT_EQ(0, stream.control(VIDIOC_S_CTRL, control));
    EXPECT_GT(brightnessOf(frameAfterChange(stream)), before + 20);
    EXPECT_EQ("200", camera.client.registerValue(camera.id(), "brightness"));
    camera.client.set(camera.id(), "brightness", 60);
    ASSERT_EQ(0, stream.control(VIDIOC_G_CTRL, control));
    EXPECT_EQ(60, control.value);
    EXPECT_LT(brightnessOf(frameAfterChange(stream)), before - 10);
    v4l2_queryctrl query{};
    query.id = V4L2_CID_SHARPNESS;
    ASSERT_EQ(0, stream.control(VIDIOC_QUERYCTRL, query));
    EXPECT_EQ(0, query.minimum);
    EXPECT_EQ(255, query.maximum);
    EXPECT_EQ(128, query.default_value);
    camera.client.fault(camera.id(), "control-error");
    EXPECT_EQ(EIO, stream.control(VIDIOC_S_CTRL, control));
}

TEST(Video, CameraWithoutAmplifierHasNoControls)
{
    TestCamera camera("plain", {{"amp", "0"}});
    VideoStream stream(camera.videoNode());
    v4l2_queryctrl query{};
    query.id = V4L2_CID_BRIGHTNESS;
    EXPECT_EQ(EINVAL, stream.control(VIDIOC_QUERYCTRL, query));
    query.id = V4L2_CTRL_FLAG_NEXT_CTRL;
    EXPECT_EQ(EINVAL, stream.control(VIDIOC_QUERYCTRL, query));
}

TEST(Video, SettingsOfTheHidInterfaceChangeThePicture)
{
    TestCamera camera;
    VideoStream stream(camera.videoNode());
    ASSERT_EQ(0, stream.setFormat(V4L2_PIX_FMT_YUYV, 640, 360));
    ASSERT_EQ(0, stream.start());
    std::vector<std::uint8_t> previous = frameAfterChange(stream);
    const std::pair<const char*, int> changes[] = {
        {"HorizontalMirror", 1}, {"CameraView", 60}, {"autoFrameSwicth", 1}};
    for (const auto& [name, value] : changes) {
        camera.client.set(camera.id(), name, value);
        const std::vector<std::uint8_t> frame = frameAfterChange(stream);
        std::size_t different = 0;
        for (std::size_t i = 0; i < frame.size(); ++i)
            different += std::abs(frame[i] - previous[i]) > 8 ? 1U : 0U;
        EXPECT_GT(different, frame.size() / 10) << name;
        previous = frame;
    }
}

TEST(Video, FrameRateCanBeHalved)
{
    TestCamera camera;
    VideoStream stream(camera.videoNode());
    ASSERT_EQ(0, stream.setFormat(V4L2_PIX_FMT_YUYV, 640, 360));
    v4l2_streamparm parameters{};
    parameters.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    parameters.parm.capture.timeperframe = {1, 15};
    ASSERT_EQ(0, stream.control(VIDIOC_S_PARM, parameters));
    EXPECT_EQ(15U, parameters.parm.capture.timeperframe.denominator);
    ASSERT_EQ(0, stream.start());
    const auto start = std::chrono::steady_clock::now();
    std::vector<std::uint8_t> frame;
    for (int i = 0; i < 15; ++i)
        ASSERT_EQ(0, stream.readFrame(frame));
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    EXPECT_GT(time.count(), 0.8);
}

TEST(Video, HasOnlyTheConfiguredModes)
{
    TestCamera camera("modes", {{"modes", "MJPG:1920x1080+MJPG:800x600"}});
    const int node = ::open(camera.videoNode().c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_GE(node, 0);
    v4l2_fmtdesc description{};
    description.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    EXPECT_EQ(0, ::ioctl(node, VIDIOC_ENUM_FMT, &description));
    EXPECT_EQ(V4L2_PIX_FMT_MJPEG, description.pixelformat);
    description.index = 1;
    EXPECT_EQ(-1, ::ioctl(node, VIDIOC_ENUM_FMT, &description));

    v4l2_frmsizeenum size{};
    size.pixel_format = V4L2_PIX_FMT_MJPEG;
    size.index = 1;
    EXPECT_EQ(0, ::ioctl(node, VIDIOC_ENUM_FRAMESIZES, &size));
    EXPECT_EQ(800U, size.discrete.width);
    EXPECT_EQ(600U, size.discrete.height);
    size.index = 2;
    EXPECT_EQ(-1, ::ioctl(node, VIDIOC_ENUM_FRAMESIZES, &size));

    v4l2_format format{};
    format.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    format.fmt.pix.pixelformat = V4L2_PIX_FMT_YUYV;
    format.fmt.pix.width = 640;
    format.fmt.pix.height = 360;
    EXPECT_EQ(0, ::ioctl(node, VIDIOC_TRY_FMT, &format));
    EXPECT_EQ(V4L2_PIX_FMT_MJPEG, format.fmt.pix.pixelformat);
    EXPECT_EQ(800U, format.fmt.pix.width);
    ::close(node);
}

TEST(Video, InvalidModeIsRefused)
{
    VirtualCameraClient client;
    for (const char* modes : {"", "YUYV", "YUYV:0x0", "YUYV:641x360", "YUYV:9999x9999",
                              "H264:640x360", "YUYV:640x360x3"}) {
        SCOPED_TRACE(modes);
        EXPECT_THROW(client.plug("refused", {{"modes", modes}}), std::runtime_error);
    }
}

} // namespace virtualcamera
