#pragma once

#include <QString>

/// The scale of the picture sliders: what is shown for a value and which value lies under the
/// mouse.
namespace SliderScale {

/// Width of a slider's handle in pixels.
inline constexpr int kHandleWidth = 16;

/// Percent shown for a slider value, 0 to 100; a value off the scale counts as the nearer end.
[[nodiscard]] int percent(int value);

/// The text beside a slider.
[[nodiscard]] QString labelText(int value);

/// The value whose handle is centred on @p x.
/// @param x      in pixels from the slider's left edge
/// @param width  of the whole slider in pixels
[[nodiscard]] int valueAt(int x, int width, int minimum, int maximum);

} // namespace SliderScale
