#include "CameraTopology.h"

#include "core/ReportDescriptor.h"

#include <cstdio>

namespace virtualcamera {

namespace {

constexpr const char* kRootHubPath = "pci0000:00/0000:00:14.0/usb1";
constexpr int kVideoMajor = 81;
constexpr int kHidrawMajor = 240;

template <typename... Values>
std::string format(const char* pattern, Values... values)
{
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, pattern, values...);
    return buffer;
}

std::string line(const std::string& value)
{
    return value + '\n';
}

std::string deviceNumber(int major, int minor)
{
    return std::to_string(major) + ':' + std::to_string(minor);
}

void addNode(SysfsDevice& device, const std::string& name, int major, int minor)
{
    device.number = deviceNumber(major, minor);
    device.properties.emplace_back("DEVNAME", "/dev/" + name);
    device.properties.emplace_back("MAJOR", std::to_string(major));
    device.properties.emplace_back("MINOR", std::to_string(minor));
    device.linksToParent = true;
}

void addUsbProperties(SysfsDevice& device, const CameraIdentity& identity)
{
    device.properties.emplace_back("ID_BUS", "usb");
    device.properties.emplace_back("ID_VENDOR", identity.manufacturer);
    device.properties.emplace_back("ID_MODEL", identity.product);
    device.properties.emplace_back("ID_VENDOR_ID", format("%04x", identity.vendorId));
    device.properties.emplace_back("ID_MODEL_ID", format("%04x", identity.productId));
    device.properties.emplace_back("ID_SERIAL_SHORT", identity.usbSerial);
}

SysfsDevice usbDevice(const CameraIdentity& identity, int deviceNumber)
{
    SysfsDevice device;
    device.subsystem = "usb";
    device.path = std::string(kRootHubPath) + "/1-" + std::to_string(identity.port);
    device.number = "189:" + std::to_string(deviceNumber - 1);
    device.attributes = {{"idVendor", line(format("%04x", identity.vendorId))},
                         {"idProduct", line(format("%04x", identity.productId))},
                         {"manufacturer", line(identity.manufacturer)},
                         {"product", line(identity.product)},
                         {"serial", line(identity.usbSerial)},
                         {"bcdDevice", "0105\n"},
                         {"bDeviceClass", "ef\n"},
                         {"busnum", "1\n"},
                         {"devnum", line(std::to_string(deviceNumber))},
                         {"devpath", line(std::to_string(identity.port))},
                         {"speed", "5000\n"}};
    device.properties = {{"DEVTYPE", "usb_device"},
                         {"DRIVER", "usb"},
                         {"PRODUCT", format("%x/%x/105", identity.vendorId, identity.productId)},
                         {"TYPE", "239/2/1"},
                         {"BUSNUM", "001"},
                         {"DEVNUM", format("%03d", deviceNumber)},
                         {"MAJOR", "189"},
                         {"MINOR", std::to_string(deviceNumber - 1)}};
    addUsbProperties(device, identity);
    return device;
}

SysfsDevice usbInterface(const SysfsDevice& parent, const CameraIdentity& identity, int number,
                         int interfaceClass, const char* driver)
{
    SysfsDevice device;
    device.subsystem = "usb";
    device.path = parent.path + format("/1-%d:1.%d", identity.port, number);
    device.attributes = {{"bInterfaceNumber", format("%02x\n", number)},
                         {"bInterfaceClass", format("%02x\n", interfaceClass)}};
    device.properties = {{"DEVTYPE", "usb_interface"},
                         {"DRIVER", driver},
                         {"PRODUCT", parent.property("PRODUCT")},
                         {"INTERFACE", format("%d/0/0", interfaceClass)}};
    return device;
}

SysfsDevice videoDevice(const std::string& parentPath, const CameraIdentity& identity, int number,
                        int index)
{
    const std::string name = "video" + std::to_string(number);
    SysfsDevice device;
    device.subsystem = "video4linux";
    device.path = parentPath + "/video4linux/" + name;
    device.attributes = {{"name", line(identity.card)}, {"index", line(std::to_string(index))}};
    addNode(device, name, kVideoMajor, number);
    device.properties.emplace_back("ID_V4L_VERSION", "2");
    device.properties.emplace_back("ID_V4L_PRODUCT", identity.card);
    device.properties.emplace_back("ID_V4L_CAPABILITIES", index == 0 ? ":capture:" : ":");
    if (identity.onUsb)
        addUsbProperties(device, identity);
    return device;
}

SysfsDevice hidDevice(const SysfsDevice& parent, const CameraIdentity& identity, int instance)
{
    SysfsDevice device;
    device.subsystem = "hid";
    device.path = parent.path +
                  format("/0003:%04X:%04X.%04X", identity.vendorId, identity.productId, instance);
    device.binaryAttributes = {{"report_descriptor", reportDescriptor()}};
    device.properties = {
        {"DRIVER", "hid-generic"},
        {"HID_ID", format("0003:%08X:%08X", identity.vendorId, identity.productId)},
        {"HID_NAME", identity.hidName()},
        {"HID_PHYS", identity.hidPhysicalPath()},
        {"HID_UNIQ", identity.usbSerial},
        {"MODALIAS", format("hid:b0003g0001v%08Xp%08X", identity.vendorId, identity.productId)}};
    return device;
}

SysfsDevice hidrawDevice(const SysfsDevice& parent, int number)
{
    const std::string name = "hidraw" + std::to_string(number);
    SysfsDevice device;
    device.subsystem = "hidraw";
    device.path = parent.path + "/hidraw/" + name;
    addNode(device, name, kHidrawMajor, number);
    return device;
}

} // namespace

std::vector<SysfsDevice> cameraDevices(const CameraIdentity& identity, const NodeNumbers& nodes,
                                       const BusNumbers& bus)
{
    std::vector<SysfsDevice> devices;
    std::string videoParent = "platform/virtual-camera." + std::to_string(identity.port);
    SysfsDevice usb;
    if (identity.onUsb) {
        usb = usbDevice(identity, bus.deviceNumber);
        devices.push_back(usb);
    }
    if (nodes.video) {
        if (identity.onUsb) {
            devices.push_back(usbInterface(usb, identity, 0, 0x0E, "uvcvideo"));
            videoParent = devices.back().path;
        }
        devices.push_back(videoDevice(videoParent, identity, *nodes.video, 0));
        devices.push_back(videoDevice(videoParent, identity, *nodes.metadata, 1));
    }
    if (nodes.hid) {
        devices.push_back(usbInterface(usb, identity, 3, 0x03, "usbhid"));
        const SysfsDevice hid = hidDevice(devices.back(), identity, bus.hidInstance);
        devices.push_back(hid);
        devices.push_back(hidrawDevice(hid, *nodes.hid));
    }
    return devices;
}

std::vector<SysfsDevice> removalOrder(const std::vector<SysfsDevice>& devices)
{
    std::vector<SysfsDevice> order;
    std::vector<SysfsDevice> parents;
    const auto takeParent = [&order, &parents] {
        order.push_back(std::move(parents.back()));
        parents.pop_back();
    };
    for (const SysfsDevice& device : devices) {
        while (!parents.empty() && device.path.rfind(parents.back().path + '/', 0) != 0)
            takeParent();
        parents.push_back(device);
    }
    while (!parents.empty())
        takeParent();
    return order;
}

SysfsDevice rootHub()
{
    SysfsDevice device;
    device.subsystem = "usb";
    device.path = kRootHubPath;
    device.attributes = {{"idVendor", "1d6b\n"}, {"idProduct", "0003\n"}, {"busnum", "1\n"},
                         {"devnum", "1\n"},      {"devpath", "0\n"},      {"speed", "10000\n"}};
    device.properties = {{"DEVTYPE", "usb_device"}, {"DRIVER", "usb"}, {"PRODUCT", "1d6b/3/601"},
                         {"TYPE", "9/0/3"},         {"BUSNUM", "001"}, {"DEVNUM", "001"}};
    return device;
}

} // namespace virtualcamera
