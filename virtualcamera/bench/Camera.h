#pragma once

#include "BenchContext.h"
#include "CameraIdentity.h"
#include "CameraTopology.h"
#include "HidInterface.h"
#include "MetadataInterface.h"
#include "VideoInterface.h"

#include <memory>
#include <string>

namespace virtualcamera {

/// How a camera is made when it is first plugged in.
struct CameraSpec
{
    CameraIdentity identity;
    DeviceConfig device;
    bool hasHid = true;
    bool hasVideo = true;
    bool hasAmplifier = true;
    PixelFormats modes = defaultPixelFormats();
    /// Whether an answer reaches every open handle of the HID node.
    bool broadcast = true;
};

/// One camera: the device, its interfaces, and where it is on the bus. Keeps its state while
/// unplugged. Guarded by the bench's mutex.
struct Camera
{
    Camera(BenchContext& context, std::string cameraId, CameraSpec cameraSpec,
           HidInterface::DropHandler onDrop);

    /// Applies what a later plug may change.
    void update(const CameraSpec& newSpec);

    const std::string id;
    CameraSpec spec;
    Device device;
    HidInterface hid;
    VideoInterface video;
    MetadataInterface metadata;

    bool onBus = false;
    bool wasOnBus = false;
    /// Counts the times on the bus, so that a planned return does not undo a later unplug.
    unsigned connection = 0;
    NodeNumbers nodes;
    /// What it has in sysfs now.
    std::vector<SysfsDevice> devices;
};

} // namespace virtualcamera
