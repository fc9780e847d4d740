#pragma once

#include "UmockdevTypes.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace virtualcamera {

/// One device directory in sysfs.
struct SysfsDevice
{
    std::string subsystem;
    /// Below /sys/devices.
    std::string path;
    /// "major:minor" of a device with a node, otherwise empty.
    std::string number;
    std::vector<std::pair<std::string, std::string>> attributes;
    /// The lines of the "uevent" attribute.
    std::vector<std::pair<std::string, std::string>> properties;
    std::vector<std::pair<std::string, std::vector<std::uint8_t>>> binaryAttributes;
    /// Whether there is a "device" link to the parent directory, as class devices have it.
    bool linksToParent = false;

    std::string devpath() const { return "/devices/" + path; }
    std::string property(const std::string& name) const;
};

/// The file tree that programs with libumockdev-preload see as /sys and /dev. It sends no device
/// events; UeventSender does.
class DeviceFileTree
{
public:
    DeviceFileTree();
    ~DeviceFileTree();
    DeviceFileTree(const DeviceFileTree&) = delete;
    DeviceFileTree& operator=(const DeviceFileTree&) = delete;

    const std::string& root() const { return m_root; }
    void addDevice(const SysfsDevice& device);
    void removeDevice(const SysfsDevice& device);
    /// From now on `handler` serves the node's ioctls, reads and writes.
    void attach(const std::string& devnode, UMockdevIoctlBase* handler);

private:
    UMockdevTestbed* m_testbed;
    std::string m_root;
};

} // namespace virtualcamera
