#include "PictureGrade.h"

#include <algorithm>
#include <cmath>

namespace virtualcamera {

namespace {

std::uint8_t sample(double value, double lowest, double highest)
{
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, lowest, highest)));
}

} // namespace

PictureGrade::PictureGrade(const PictureState& state)
{
    const double middle = 126;
    const double gain = std::pow(2.4, state.contrast);
    const double offset = 90 * state.brightness;
    const double color = state.saturation < 0 ? 1 + state.saturation : 1 + 1.2 * state.saturation;
    for (std::size_t i = 0; i < m_luma.size(); ++i) {
        const auto value = static_cast<double>(i);
        m_luma[i] = sample((value - middle) * gain + middle + offset, 16, 235);
        m_chroma[i] = sample((value - 128) * color + 128, 16, 240);
    }
}

} // namespace virtualcamera
