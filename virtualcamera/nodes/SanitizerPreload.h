#pragma once

#include <string>

namespace virtualcamera {

/// The sanitizer run-time library a program is linked with, or an empty text. It has to be the
/// first library in the process, so it must come first in LD_PRELOAD too. The environment
/// variable VIRTUALCAMERA_SANITIZER_PRELOAD, when set, is used for every program instead.
std::string sanitizerPreload(const std::string& program);

} // namespace virtualcamera
