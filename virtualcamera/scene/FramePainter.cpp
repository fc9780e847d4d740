#include "FramePainter.h"

#include <tuple>

namespace virtualcamera {

namespace {

auto tied(const PictureState& s)
{
    return std::tie(s.fourcc, s.width, s.height, s.cameraName, s.mirrored, s.fieldOfView, s.framing,
                    s.brightness, s.contrast, s.saturation, s.sharpness);
}

} // namespace

bool PictureState::operator==(const PictureState& other) const
{
    return tied(*this) == tied(other);
}

} // namespace virtualcamera
