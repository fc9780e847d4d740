#pragma once

#include "CameraIdentity.h"
#include "core/Device.h"
#include "PixelFormats.h"

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

} // namespace virtualcamera
