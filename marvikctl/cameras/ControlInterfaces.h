#pragma once

#include "HidDevices.h"

/// The HID interfaces of the system, with path and ids. Defined in
/// ControlInterfaces_<platform>.cpp.
namespace ControlInterfaces {

[[nodiscard]] HidDeviceMap list();

} // namespace ControlInterfaces
