#include "V4l2Modes.h"

#include "V4l2Node.h"

#include <algorithm>

namespace {

constexpr unsigned kMaxEntries = 256;

std::optional<VideoMode::Format> formatOf(quint32 pixelFormat)
{
    switch (pixelFormat) {
    case V4L2_PIX_FMT_YUYV:
        return VideoMode::Format::Yuy2;
    case V4L2_PIX_FMT_NV12:
        return VideoMode::Format::Nv12;
    case V4L2_PIX_FMT_MJPEG:
    case V4L2_PIX_FMT_JPEG:
        return VideoMode::Format::Mjpeg;
    default:
        return std::nullopt;
    }
}

double fastestRate(const V4l2Node& node, quint32 pixelFormat, quint32 width, quint32 height)
{
    double fastest = 0.0;
    for (unsigned index = 0; index < kMaxEntries; ++index) {
        v4l2_frmivalenum interval{};
        interval.index = index;
        interval.pixel_format = pixelFormat;
        interval.width = width;
        interval.height = height;
        if (!node.control(VIDIOC_ENUM_FRAMEINTERVALS, &interval))
            break;
        const bool discrete = interval.type == V4L2_FRMIVAL_TYPE_DISCRETE;
        const v4l2_fract& shortest = discrete ? interval.discrete : interval.stepwise.min;
        if (shortest.numerator > 0)
            fastest =
                std::max(fastest, static_cast<double>(shortest.denominator) / shortest.numerator);
        if (!discrete)
            break;
    }
    return fastest;
}

void appendSizes(const V4l2Node& node, quint32 pixelFormat, VideoMode::Format format,
                 std::vector<VideoMode>& modes)
{
    for (unsigned index = 0; index < kMaxEntries; ++index) {
        v4l2_frmsizeenum entry{};
        entry.index = index;
        entry.pixel_format = pixelFormat;
        if (!node.control(VIDIOC_ENUM_FRAMESIZES, &entry) ||
            entry.type != V4L2_FRMSIZE_TYPE_DISCRETE)
            break;
        const v4l2_frmsize_discrete& size = entry.discrete;
        modes.push_back({format,
                         {static_cast<int>(size.width), static_cast<int>(size.height)},
                         fastestRate(node, pixelFormat, size.width, size.height)});
    }
}

} // namespace

std::vector<VideoMode> listVideoModes(const V4l2Node& node)
{
    std::vector<VideoMode> modes;
    for (unsigned index = 0; index < kMaxEntries; ++index) {
        v4l2_fmtdesc description{};
        description.index = index;
        description.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        if (!node.control(VIDIOC_ENUM_FMT, &description))
            break;
        if (const auto format = formatOf(description.pixelformat))
            appendSizes(node, description.pixelformat, *format, modes);
    }
    return modes;
}
