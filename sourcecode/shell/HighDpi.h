#pragma once

#include <optional>

namespace HighDpi {

/// Windows are scaled on monitors of this width (in pixels) and more: the main window has a fixed
/// size in pixels, and its texts would be too small there.
constexpr int kScalingWidth = 2048;

/// @param monitorWidth in physical pixels; no value when it could not be read
[[nodiscard]] constexpr bool wantsScaling(std::optional<int> monitorWidth)
{
    return monitorWidth.value_or(0) >= kScalingWidth;
}

/// Sets the application attributes. Call it before the application object is created.
void enableScaling();

} // namespace HighDpi
