#pragma once

#include <QString>

namespace UsbBus {

/// The USB bus of a control interface; the same text for all interfaces where it is not known.
/// Defined in UsbBus_<platform>.cpp.
[[nodiscard]] QString of(const QString& hidPath);

} // namespace UsbBus
