#pragma once

#include <cstdint>
#include <vector>

namespace virtualcamera {

/// Encodes a YUYV picture as a camera does, with the colour at half the horizontal resolution.
std::vector<std::uint8_t> encodeJpeg(const std::uint8_t* yuyv, int width, int height);

} // namespace virtualcamera
