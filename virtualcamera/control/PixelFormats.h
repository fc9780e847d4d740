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

/// In the order the camera lists them; the first one is its default. Never empty.
using PixelFormats = std::vector<PixelFormat>;

/// The default formats of a camera.
const PixelFormats& defaultPixelFormats();
/// Parses "YUYV:1920x1080+MJPG:3840x2160"; throws std::invalid_argument.
PixelFormats parsePixelFormats(const std::string& text);

const PixelFormat* findPixelFormat(const PixelFormats& formats, std::uint32_t fourcc);
/// Changes a requested format into the nearest one that the camera has, as VIDIOC_TRY_FMT does.
void adjustFormat(const PixelFormats& formats, v4l2_pix_format& format);
std::string fourccText(std::uint32_t fourcc);

/// Frames per second, best first.
const std::vector<std::uint32_t>& frameRates();
std::uint32_t nearestFrameRate(const v4l2_fract& interval);

} // namespace virtualcamera
