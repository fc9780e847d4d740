#pragma once

#include "FramePainter.h"

#include <array>
#include <cstdint>

namespace virtualcamera {

/// Brightness, contrast and saturation as tables over the samples of a YUYV picture.
class PictureGrade
{
public:
    PictureGrade()
        : PictureGrade(PictureState())
    {
    }
    explicit PictureGrade(const PictureState& state);

    std::uint8_t luma(std::uint8_t value) const { return m_luma[value]; }
    std::uint8_t chroma(std::uint8_t value) const { return m_chroma[value]; }

private:
    std::array<std::uint8_t, 256> m_luma{};
    std::array<std::uint8_t, 256> m_chroma{};
};

} // namespace virtualcamera
