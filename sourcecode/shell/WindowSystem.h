#pragma once

#include <optional>

/// What the program needs from the window system before the application object exists. Defined in
/// WindowSystem_<platform>.cpp.
namespace WindowSystem {

/// Width of the primary monitor's current mode in pixels; no value when it cannot be read.
[[nodiscard]] std::optional<int> monitorWidth();

} // namespace WindowSystem
