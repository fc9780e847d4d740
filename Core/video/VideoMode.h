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

/// The mode that shows a smooth picture of @p target pixels at the least cost. A mode is
/// smooth with 24 frames per second or more. If the camera has no smooth mode, its fastest modes
/// are used. Among these modes the function returns the smallest one that covers the target; of two
/// equal sizes it returns the uncompressed one. If no mode covers the target, it returns the
/// largest.
/// @return nothing when there is no mode at all
[[nodiscard]] std::optional<VideoMode> selectVideoMode(const std::vector<VideoMode>& modes,
                                                       const QSize& target);

/// The size of a picture of @p frame's shape that fills @p target as far as the shape allows. A
/// shape that is off by no more than the rounding of a widget's size fills it.
[[nodiscard]] QSize fittedSize(const QSize& frame, const QSize& target);
