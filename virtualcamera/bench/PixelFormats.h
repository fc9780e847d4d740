#pragma once

#include <cstdint>
#include <linux/videodev2.h>
#include <string>
#include <vector>

namespace virtualcamera {

struct FrameSize
{
    std::uint32_t width;
    std::uint32_t height;
};

struct PixelFormat
{
    std::uint32_t fourcc;
    std::string description;
    bool compressed;
    std::vector<FrameSize> sizes;
};

/// In the order the camera lists them; the first one is its default.
const std::vector<PixelFormat>& pixelFormats();
const PixelFormat* findPixelFormat(std::uint32_t fourcc);
/// Changes a wish into the nearest format the camera has, as VIDIOC_TRY_FMT does.
void adjustFormat(v4l2_pix_format& format);
std::string fourccText(std::uint32_t fourcc);

/// Frames per second, best first.
const std::vector<std::uint32_t>& frameRates();
std::uint32_t nearestFrameRate(const v4l2_fract& interval);

} // namespace virtualcamera
