#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace virtualcamera {

enum class Framing { Off, Speaker, Stage };

/// Everything the camera's picture depends on.
struct PictureState
{
    std::uint32_t fourcc = 0;
    int width = 0;
    int height = 0;
    std::string cameraName;
    bool mirrored = false;
    /// Degrees.
    int fieldOfView = 120;
    Framing framing = Framing::Off;
    /// Each from -1 to 1; 0 is the control's default.
    double brightness = 0;
    double contrast = 0;
    double saturation = 0;
    double sharpness = 0;

    bool operator==(const PictureState& other) const;
    bool operator!=(const PictureState& other) const { return !(*this == other); }
};

/// Makes the frames of one camera. Not thread-safe.
class FramePainter
{
public:
    virtual ~FramePainter() = default;
    /// Writes the frame for this moment and returns its size in bytes, 0 when it does not fit.
    virtual std::size_t paint(const PictureState& state, std::uint32_t sequence, double seconds,
                              std::uint8_t* to, std::size_t capacity) = 0;
};

} // namespace virtualcamera
