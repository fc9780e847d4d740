#include "VideoDevices.h"

namespace VideoDevices {

UVCDeviceInfo withFallbacks(const Properties& properties)
{
    UVCDeviceInfo info;
    info.displayName = properties.displayName;
    info.friendlyName = properties.friendlyName.value_or(info.displayName);
    info.devicePath = properties.devicePath.value_or(info.friendlyName);
    return info;
}

} // namespace VideoDevices
