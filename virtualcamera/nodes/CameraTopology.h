#pragma once

#include "CameraIdentity.h"
#include "DeviceFileTree.h"

#include <optional>
#include <string>
#include <vector>

namespace virtualcamera {

/// The node numbers of a camera on the bus.
struct NodeNumbers
{
    std::optional<int> hid;
    std::optional<int> video;
    std::optional<int> metadata;
};

/// The numbers that a bus assigns to every new device.
struct BusNumbers
{
    int deviceNumber = 2;
    int hidInstance = 1;
};

/// The devices a camera adds to sysfs, in the order the kernel announces them: parents first, the
/// video interface before the HID interface.
std::vector<SysfsDevice> cameraDevices(const CameraIdentity& identity, const NodeNumbers& nodes,
                                       const BusNumbers& bus);

/// The same devices in the order in which the kernel removes them: children first, but the
/// interfaces in the order of their numbers.
std::vector<SysfsDevice> removalOrder(const std::vector<SysfsDevice>& devices);

/// The root hub, the parent of all cameras.
SysfsDevice rootHub();

} // namespace virtualcamera
