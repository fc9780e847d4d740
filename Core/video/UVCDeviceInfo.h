#pragma once

#include <QList>
#include <QMetaType>
#include <QString>

/// One video capture device as the platform enumerates it.
///
/// A property that the platform does not report repeats the field before it, so no field of a
/// listed device is empty because a property is missing.
struct UVCDeviceInfo
{
    QString displayName;  ///< the platform's own name of the device (Linux: the device node)
    QString friendlyName; ///< the name for people (Linux: the card name)
    QString devicePath;   ///< names the device and contains its USB ids as "vid_xxxx&pid_xxxx"

    friend bool operator==(const UVCDeviceInfo& a, const UVCDeviceInfo& b)
    {
        return a.displayName == b.displayName && a.friendlyName == b.friendlyName &&
               a.devicePath == b.devicePath;
    }
};

Q_DECLARE_METATYPE(UVCDeviceInfo)
Q_DECLARE_METATYPE(QList<UVCDeviceInfo>)
