#include "VideoMode.h"

#include <algorithm>
#include <cstdlib>
#include <tuple>

namespace {

constexpr double kSmoothFramesPerSecond = 24.0;
constexpr int kRoundingPixels = 2;

long area(const QSize& size)
{
    return static_cast<long>(size.width()) * size.height();
}

bool covers(const QSize& size, const QSize& target)
{
    return size.width() >= target.width() && size.height() >= target.height();
}

} // namespace

std::optional<VideoMode> selectVideoMode(const std::vector<VideoMode>& modes, const QSize& target)
{
    if (modes.empty())
        return std::nullopt;

    double required = 0.0;
    for (const VideoMode& mode : modes)
        required = std::max(required, mode.framesPerSecond);
    required = std::min(required, kSmoothFramesPerSecond);

    // Among modes that cover the target the smallest is best; among the others the largest.
    const auto rank = [&target, required](const VideoMode& mode) {
        const bool tooSlow = mode.framesPerSecond < required;
        const bool tooSmall = !covers(mode.size, target);
        const long cost = tooSmall ? -area(mode.size) : area(mode.size);
        return std::make_tuple(tooSlow, tooSmall, cost, mode.format == VideoMode::Format::Mjpeg,
                               -mode.framesPerSecond);
    };
    return *std::min_element(
        modes.begin(), modes.end(),
        [&rank](const VideoMode& a, const VideoMode& b) { return rank(a) < rank(b); });
}

QSize fittedSize(const QSize& frame, const QSize& target)
{
    const QSize fitted = frame.scaled(target, Qt::KeepAspectRatio);
    const bool fills = std::abs(fitted.width() - target.width()) <= kRoundingPixels &&
                       std::abs(fitted.height() - target.height()) <= kRoundingPixels;
    return fills ? target : fitted;
}
