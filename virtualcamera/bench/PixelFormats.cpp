#include "PixelFormats.h"

#include <algorithm>
#include <cstdlib>

namespace virtualcamera {

const std::vector<PixelFormat>& pixelFormats()
{
    static const std::vector<PixelFormat> formats{
        {V4L2_PIX_FMT_YUYV, "YUYV 4:2:2", false, {{1920, 1080}, {1280, 720}, {640, 360}}},
        {V4L2_PIX_FMT_MJPEG,
         "Motion-JPEG",
         true,
         {{3840, 2160}, {1920, 1080}, {1280, 720}, {640, 360}}},
    };
    return formats;
}

const PixelFormat* findPixelFormat(std::uint32_t fourcc)
{
    const auto& formats = pixelFormats();
    const auto found = std::find_if(formats.begin(), formats.end(),
                                    [fourcc](const PixelFormat& f) { return f.fourcc == fourcc; });
    return found == formats.end() ? nullptr : &*found;
}

void adjustFormat(v4l2_pix_format& format)
{
    const PixelFormat* known = findPixelFormat(format.pixelformat);
    const PixelFormat& chosen = known ? *known : pixelFormats().front();
    const auto distance = [&format](const FrameSize& size) {
        return std::labs(static_cast<long>(size.width) - static_cast<long>(format.width)) +
               std::labs(static_cast<long>(size.height) - static_cast<long>(format.height));
    };
    const FrameSize size = *std::min_element(
        chosen.sizes.begin(), chosen.sizes.end(),
        [&distance](const FrameSize& a, const FrameSize& b) { return distance(a) < distance(b); });
    format = v4l2_pix_format{};
    format.width = size.width;
    format.height = size.height;
    format.pixelformat = chosen.fourcc;
    format.field = V4L2_FIELD_NONE;
    format.colorspace = V4L2_COLORSPACE_SRGB;
    format.bytesperline = chosen.compressed ? 0 : size.width * 2;
    format.sizeimage = size.width * size.height * 2;
}

std::string fourccText(std::uint32_t fourcc)
{
    std::string text;
    for (unsigned shift = 0; shift < 32; shift += 8)
        text += static_cast<char>((fourcc >> shift) & 0xFFU);
    return text;
}

const std::vector<std::uint32_t>& frameRates()
{
    static const std::vector<std::uint32_t> rates{30, 15};
    return rates;
}

std::uint32_t nearestFrameRate(const v4l2_fract& interval)
{
    if (interval.numerator == 0 || interval.denominator == 0)
        return frameRates().front();
    const std::uint32_t wished = interval.denominator / interval.numerator;
    return wished > 20 ? 30 : 15;
}

} // namespace virtualcamera
