#include "ListChange.h"

#include "CameraModels.h"
#include "IDeviceNotify.h"
#include "LogCategories.h"

#include <algorithm>

ListChange::ListChange(const QMap<QString, HidDevices>& present,
                       const QMap<QString, HidDevices>& before, int status)
    : m_present(present)
    , m_samePaths(present.size() == before.size() &&
                  std::equal(present.keyBegin(), present.keyEnd(), before.keyBegin()))
    , m_status(status)
{
    const auto isCameraOf = [](const QMap<QString, HidDevices>& devices, const QString& path) {
        const auto found = devices.constFind(path);
        return found != devices.constEnd() && CameraModels::find(*found);
    };
    for (const HidDevices& device : present) {
        qCDebug(hotplugLog) << "In Loop deviceHidMaps curHidDevice path =" << device.path;
        if (!CameraModels::find(device))
            continue;
        m_cameras.append(device);
        if (!isCameraOf(before, device.path))
            m_arrived.append(device);
    }
    for (const HidDevices& device : before) {
        qCDebug(hotplugLog) << "In Loop oldDeviceHidMaps curHidDevice path =" << device.path;
        if (CameraModels::find(device) && !isCameraOf(present, device.path))
            m_anyLeft = true;
    }
}

bool ListChange::isReplug() const
{
    return m_status == DevicePluggedIn && m_samePaths;
}

QList<HidDevices> ListChange::camerasThatStayed() const
{
    QList<HidDevices> stayed;
    for (const HidDevices& camera : m_cameras) {
        if (!m_arrived.contains(camera))
            stayed.append(camera);
    }
    return stayed;
}

ListChange::Meaning ListChange::meaningFor(const QString& openHidPath) const
{
    if (!concernsCameras())
        return Meaning::Nothing;
    if (!openHidPath.isEmpty() && !isPresent(openHidPath))
        return Meaning::CameraLeft;
    return m_arrived.isEmpty() ? Meaning::Nothing : Meaning::CameraArrived;
}
