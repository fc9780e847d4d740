#pragma once

#include "UVCDeviceInfo.h"

#include <optional>
#include <QString>
#include <vector>

/// The platform's inventory of video capture devices.
namespace VideoDevices {

/// What the platform reports about one device.
struct Properties
{
    QString displayName;
    std::optional<QString> friendlyName;
    std::optional<QString> devicePath;
};

/// All video capture devices in enumeration order. The list is empty when no device is plugged in,
/// and when the platform reports an error. Callable on any thread. Defined in
/// VideoDevices_<platform>.cpp.
[[nodiscard]] std::vector<Properties> list();

/// The listed entry of a device: a property that is missing repeats the one before it.
[[nodiscard]] UVCDeviceInfo withFallbacks(const Properties& properties);

} // namespace VideoDevices
