#pragma once

#include "Camera.h"

#include <string>

namespace virtualcamera {

/// Changes one option of a plug request; throws std::invalid_argument.
void applyOption(CameraSpec& spec, const std::string& key, const std::string& value);

/// Changes one register of a camera; throws std::invalid_argument.
void applyRegister(Camera& camera, const std::string& name, const std::string& value);

/// A whole number between the limits; throws std::invalid_argument.
long parseInteger(const std::string& text, long lowest, long highest);

} // namespace virtualcamera
