#pragma once

#include <optional>
#include <QSize>
#include <vector>

/// One streaming mode of a camera.
struct VideoMode
{
    enum class Format {
        Yuy2,
        Nv12,
        Mjpeg,
    };

    Format format = Format::Yuy2;
    QSize size;
    double framesPerSecond = 0.0;

    friend bool operator==(const VideoMode& a, const VideoMode& b)
    {
        return a.format == b.format && a.size == b.size && a.framesPerSecond == b.framesPerSecond;
    }
};

/// The mode that shows a smooth picture of @p target pixels at the least cost: among the modes that
/// move (24 frames per second; when no mode does, the fastest ones) the smallest that covers the
/// target, uncompressed before compressed. Without a covering mode the largest there is.
/// @return nothing when there is no mode at all
[[nodiscard]] std::optional<VideoMode> selectVideoMode(const std::vector<VideoMode>& modes,
                                                       const QSize& target);

/// The size of a picture of @p frame's shape that fills @p target as far as the shape allows. A
/// shape that is off by no more than the rounding of a widget's size fills it.
[[nodiscard]] QSize fittedSize(const QSize& frame, const QSize& target);
