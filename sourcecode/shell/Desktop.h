#pragma once

#include <optional>

/// What the start of the program needs to know and set about the desktop before there is an
/// application object. Defined in Desktop_<platform>.cpp.
namespace Desktop {

/// Chooses the window system.
void chooseWindowSystem();

/// Width of the primary monitor's current mode in pixels; nothing when it cannot be read.
[[nodiscard]] std::optional<int> monitorWidth();

/// Names fonts to take where the window's own are not installed. After the application object
/// exists.
void setFontSubstitutes();

} // namespace Desktop
