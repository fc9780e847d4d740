#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

typedef struct _UMockdevTestbed UMockdevTestbed;
typedef struct _UMockdevIoctlBase UMockdevIoctlBase;

namespace virtualcamera {

/// One device directory in sysfs.
struct SysfsDevice
{
    std::string subsystem;
    /// Below /sys/devices.
    std::string path;
    /// "major:minor" of a device with a node, else empty.
    std::string number;
    std::vector<std::pair<std::string, std::string>> attributes;
    /// The lines of the "uevent" attribute.
    std::vector<std::pair<std::string, std::string>> properties;
    std::vector<std::pair<std::string, std::vector<std::uint8_t>>> binaryAttributes;
    /// Whether the "device" link to the parent directory is there, as class devices have it.
    bool linksToParent = false;

    std::string devpath() const { return "/devices/" + path; }
    std::string property(const std::string& name) const;
};

/// The file tree that stands for /sys and /dev below libumockdev-preload. It announces nothing:
/// the bench sends the device events itself.
class Testbed
{
public:
    Testbed();
    ~Testbed();
    Testbed(const Testbed&) = delete;
    Testbed& operator=(const Testbed&) = delete;

    const std::string& root() const { return m_root; }
    void addDevice(const SysfsDevice& device);
    void removeDevice(const SysfsDevice& device);
    /// Lets `handler` serve the node's ioctls, reads and writes from now on.
    void attach(const std::string& devnode, UMockdevIoctlBase* handler);

private:
    UMockdevTestbed* m_testbed;
    std::string m_root;
};

} // namespace virtualcamera
