#pragma once

#include "scene/FramePainter.h"
#include <cstdint>

namespace virtualcamera {

struct CameraIdentity;
class Device;

/// What the camera shows in this format, with the settings it has now.
PictureState pictureOf(const Device& device, const CameraIdentity& identity, std::uint32_t fourcc,
                       std::uint32_t width, std::uint32_t height);

} // namespace virtualcamera
