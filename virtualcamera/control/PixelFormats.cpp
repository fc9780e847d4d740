#include "PixelFormats.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <stdexcept>

namespace virtualcamera {

namespace {

constexpr unsigned kLargestWidth = 4096;
constexpr unsigned kLargestHeight = 2304;

/// Parses "1920x1080". Two pixels share their colour, so the width must be even.
FrameSize parseFrameSize(const std::string& text)
{
    FrameSize size{};
    char rest = 0;
    if (std::sscanf(text.c_str(), "%ux%u%c", &size.width, &size.height, &rest) != 2 ||
        size.width < 2 || size.width > kLargestWidth || size.width % 2 != 0 || size.height < 2 ||
        size.height > kLargestHeight)
        throw std::invalid_argument("not a frame size: " + text);
    return size;
}

} // namespace

const PixelFormats& defaultPixelFormats()
{
    static const PixelFormats formats{
        {V4L2_PIX_FMT_YUYV, "YUYV 4:2:2", false, {{1920, 1080}, {1280, 720}, {640, 360}}},
        {V4L2_PIX_FMT_MJPEG,
         "Motion-JPEG",
         true,
         {{3840, 2160}, {1920, 1080}, {1280, 720}, {640, 360}}},
    };
    return formats;
}

PixelFormats parsePixelFormats(const std::string& text)
{
    PixelFormats formats;
    std::istringstream modes(text);
    for (std::string mode; std::getline(modes, mode, '+');) {
        const std::size_t colon = mode.find(':');
        const auto& known = defaultPixelFormats();
        const auto type = std::find_if(known.begin(), known.end(), [&](const PixelFormat& format) {
            return mode.compare(0, colon, fourccText(format.fourcc)) == 0;
        });
        if (colon == std::string::npos || type == known.end())
            throw std::invalid_argument("not YUYV:... or MJPG:...: " + mode);
        if (!findPixelFormat(formats, type->fourcc))
            formats.push_back({type->fourcc, type->description, type->compressed, {}});
        const auto format =
            std::find_if(formats.begin(), formats.end(),
                         [&type](const PixelFormat& each) { return each.fourcc == type->fourcc; });
        format->sizes.push_back(parseFrameSize(mode.substr(colon + 1)));
    }
    if (formats.empty())
        throw std::invalid_argument("a camera has at least one mode");
    return formats;
}

const PixelFormat* findPixelFormat(const PixelFormats& formats, std::uint32_t fourcc)
{
    const auto found = std::find_if(formats.begin(), formats.end(),
                                    [fourcc](const PixelFormat& f) { return f.fourcc == fourcc; });
    return found == formats.end() ? nullptr : &*found;
}

void adjustFormat(const PixelFormats& formats, v4l2_pix_format& format)
{
    const PixelFormat* known = findPixelFormat(formats, format.pixelformat);
    const PixelFormat& chosen = known ? *known : formats.front();
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
