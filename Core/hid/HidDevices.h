#pragma once

#include <QMap>
#include <QMetaType>
#include <QString>

/// One HID interface of the system, detached from hidapi's list.
struct HidDevices
{
    QString path; ///< hidapi path; also the key of the inventory
    quint16 vendorId = 0;
    quint16 productId = 0;
    QString manufacturer;

    friend bool operator==(const HidDevices& a, const HidDevices& b)
    {
        return a.path == b.path && a.vendorId == b.vendorId && a.productId == b.productId &&
               a.manufacturer == b.manufacturer;
    }
};

using HidDeviceMap = QMap<QString, HidDevices>;

Q_DECLARE_METATYPE(HidDevices)
Q_DECLARE_METATYPE(HidDeviceMap)
