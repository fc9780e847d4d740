#include "TestCamera.h"
#include "UdevMonitor.h"
#include "VideoStream.h"

#include "control/CameraIdentity.h"
#include "core/Commands.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <unistd.h>

namespace virtualcamera {

namespace {

bool isEnumerated()
{
    hid_device_info* list = hid_enumerate(kVendorId, kProductId);
    const bool found = list != nullptr;
    hid_free_enumeration(list);
    return found;
}

std::string attribute(const std::string& subsystem, const std::string& name, const char* parentType,
                      const char* wanted)
{
    udev* context = udev_new();
    udev_device* device =
        udev_device_new_from_subsystem_sysname(context, subsystem.c_str(), name.c_str());
    udev_device* from = device;
    if (device && parentType)
        from = udev_device_get_parent_with_subsystem_devtype(device, "usb", parentType);
    const char* value = from ? udev_device_get_sysattr_value(from, wanted) : nullptr;
    std::string result = value ? value : "";
    udev_device_unref(device);
    udev_unref(context);
    return result;
}

} // namespace

TEST(Hotplug, EventsArriveInTheKernelsOrder)
{
    UdevMonitor monitor({"hidraw", "video4linux"});
    TestCamera camera;
    const auto nodes = camera.client.nodes(camera.id());
    auto events = monitor.collect(3, 2000);
    ASSERT_EQ(3U, events.size());
    EXPECT_EQ("add", events[0].action);
    EXPECT_EQ(nodes.video, events[0].node);
    EXPECT_EQ(nodes.metadata, events[1].node);
    EXPECT_EQ(nodes.hid, events[2].node);
    EXPECT_TRUE(isEnumerated());

    camera.client.unplug(camera.id());
    events = monitor.collect(3, 2000);
    ASSERT_EQ(3U, events.size());
    EXPECT_EQ("remove", events[0].action);
    EXPECT_EQ("video4linux", events[0].subsystem);
    EXPECT_EQ("video4linux", events[1].subsystem);
    EXPECT_EQ("hidraw", events[2].subsystem);
    EXPECT_FALSE(isEnumerated());
}

TEST(Hotplug, DeviceIsGoneWhenItsRemovalIsAnnounced)
{
    TestCamera camera;
    UdevMonitor monitor({"hidraw"});
    for (int i = 0; i < 10; ++i) {
        camera.client.unplug(camera.id());
        ASSERT_EQ(1U, monitor.collect(1, 2000).size());
        ASSERT_FALSE(isEnumerated());
        camera.client.plug(camera.id());
        ASSERT_EQ(1U, monitor.collect(1, 2000).size());
        ASSERT_TRUE(isEnumerated());
        ASSERT_TRUE(openHid(camera.hidNode()));
    }
}

TEST(Hotplug, VideoAndHidHaveTheSameUsbDevice)
{
    TestCamera camera;
    const auto nodes = camera.client.nodes(camera.id());
    const std::string video = nodes.video.substr(5);
    const std::string hid = nodes.hid.substr(5);
    EXPECT_EQ("NOVA EDGE", attribute("video4linux", video, nullptr, "name"));
    EXPECT_EQ("1", attribute("video4linux", nodes.metadata.substr(5), nullptr, "index"));
    EXPECT_EQ(kVendorId,
              std::stoul(attribute("video4linux", video, "usb_device", "idVendor"), nullptr, 16));
    EXPECT_EQ(kProductId,
              std::stoul(attribute("hidraw", hid, "usb_device", "idProduct"), nullptr, 16));
    EXPECT_EQ(attribute("video4linux", video, "usb_device", "devnum"),
              attribute("hidraw", hid, "usb_device", "devnum"));
    EXPECT_EQ("00", attribute("video4linux", video, "usb_interface", "bInterfaceNumber"));
    EXPECT_EQ("03", attribute("hidraw", hid, "usb_interface", "bInterfaceNumber"));
}

TEST(Hotplug, VideoNodeWithoutUsbDevice)
{
    TestCamera camera("virtual", {{"usb", "0"}});
    const auto nodes = camera.client.nodes(camera.id());
    EXPECT_TRUE(nodes.hid.empty());
    EXPECT_EQ("", attribute("video4linux", nodes.video.substr(5), "usb_device", "idVendor"));
}

TEST(Hotplug, MonitorThatDoesNotReadLosesNothing)
{
    UdevMonitor monitor({"hidraw"});
    TestCamera camera;
    for (int i = 0; i < 40; ++i) {
        camera.client.unplug(camera.id());
        camera.client.plug(camera.id());
    }
    EXPECT_EQ(81U, monitor.collect(81, 5000).size());
}

TEST(Hotplug, OpenHandleKeepsItsNumber)
{
    TestCamera camera;
    const std::string first = camera.hidNode();
    HidHandle held = openHid(first);
    camera.client.unplug(camera.id());
    camera.client.plug(camera.id());
    EXPECT_NE(first, camera.hidNode());
    held.reset();
    camera.client.unplug(camera.id());
    usleep(50000); // virtualcamera sees the close on another thread
    camera.client.plug(camera.id());
    EXPECT_EQ(first, camera.hidNode());
}

TEST(Hotplug, ManyRoundsLeakNothing)
{
    UdevMonitor monitor({"hidraw", "video4linux"});
    TestCamera camera("rounds");
    const auto round = [&camera, &monitor] {
        const auto nodes = camera.client.nodes(camera.id());
        HidHandle hid = openHid(nodes.hid);
        const Bytes request = readRequest(command::kProbe);
        const bool written = hid && hid_write(hid.get(), request.data(), request.size()) > 0;
        const bool answered = written && !readReport(hid, 1000).empty();
        VideoStream video(nodes.video);
        const bool started =
            video.setFormat(V4L2_PIX_FMT_YUYV, 640, 360) == 0 && video.start(2) == 0;
        camera.client.unplug(camera.id());
        // Every open handle fails, and so does opening the node again.
        const bool failed = hid_write(hid.get(), request.data(), request.size()) < 0;
        openHid(nodes.hid);
        camera.client.plug(camera.id());
        monitor.collect(6, 0);
        return answered && started && failed;
    };
    for (int i = 0; i < 5; ++i)
        ASSERT_TRUE(round());
    const std::size_t before = openDescriptors();
    for (int i = 0; i < 210; ++i)
        ASSERT_TRUE(round()) << i;
    EXPECT_EQ(before, openDescriptors());
    EXPECT_EQ(0U, camera.client.handles(camera.id()).hid);
}

} // namespace virtualcamera
