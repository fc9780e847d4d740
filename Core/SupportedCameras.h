#pragma once

#include "HidDevices.h"

#include <array>
#include <QString>

/// What makes a USB device one of our cameras.
namespace SupportedCameras {

constexpr quint16 kVendorId = 0xB206;
constexpr quint16 kProductId = 0xB215;

/// Reference list of the supported products. Cameras are recognised by their USB ids; no decision
/// reads these names.
constexpr std::array<const char*, 4> kModelNames{"SVC802", "SVA802", "SVT202",
                                                 "Sorvanta USB Camera"};

/// True for the control interface of a supported camera.
inline bool isCameraInterface(const HidDevices& device)
{
    return device.vendorId == kVendorId && device.productId == kProductId;
}

/// True when the path of a video device carries the ids of a supported camera, in either case:
/// Windows and drivers disagree about the case of device paths.
inline bool isCameraVideoPath(const QString& devicePath)
{
    return devicePath.contains(QLatin1String("vid_b206&pid_b215"), Qt::CaseInsensitive);
}

} // namespace SupportedCameras
