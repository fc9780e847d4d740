#pragma once

#include "scene/FramePainter.h"
#include <cstdint>

namespace virtualcamera {

struct CameraIdentity;
class Device;

/// The camera's picture in this format, with its current settings.
PictureState pictureOf(const Device& device, const CameraIdentity& identity, std::uint32_t fourcc,
                       std::uint32_t width, std::uint32_t height);

} // namespace virtualcamera
