#pragma once

#include <optional>

namespace HighDpi {

/// Monitors from here on are given scaled windows: the window has a fixed size in pixels, which is
/// too small to read on them.
constexpr int kScalingWidth = 2048;

/// @param monitorWidth in physical pixels, nothing when it could not be read
[[nodiscard]] constexpr bool wantsScaling(std::optional<int> monitorWidth)
{
    return monitorWidth.value_or(0) >= kScalingWidth;
}

/// Sets the application attributes; before the application object exists.
void enableScaling();

} // namespace HighDpi
