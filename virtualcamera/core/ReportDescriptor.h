#pragma once

#include "Frame.h"

namespace virtualcamera {

/// The camera's HID report descriptor: one input and one output report of kReportSize bytes.
const Bytes& reportDescriptor();

} // namespace virtualcamera
