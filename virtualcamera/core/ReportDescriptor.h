#pragma once

#include "Frame.h"

namespace virtualcamera {

/// What the camera tells about its reports: one input and one output report of kReportSize bytes.
const Bytes& reportDescriptor();

} // namespace virtualcamera
