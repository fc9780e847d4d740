#pragma once

#include "HidDevices.h"
#include "UVCDeviceInfo.h"

#include <QList>
#include <QMap>

/// What a device notification reports.
enum HotPlugStatus {
    DevicePluggedIn = 0,
    DeviceRemoved = 1,
};

/// Receiver of hot-plug notifications. Called on the watcher's thread.
class IDeviceNotify
{
public:
    virtual ~IDeviceNotify() = default;

    /// The video devices changed; the HID interfaces were not enumerated.
    virtual void camerasChanged(const QList<UVCDeviceInfo>& cameras, int status) = 0;

    /// Video devices and HID interfaces changed.
    virtual void camerasChanged(const QList<UVCDeviceInfo>& cameras,
                                const QMap<QString, HidDevices>& deviceHidMaps, int status) = 0;
};
