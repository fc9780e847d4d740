#include "DeviceNotify.h"

DeviceNotify::DeviceNotify(QObject* parent)
    : QObject(parent)
{
}

void DeviceNotify::camerasChanged(const QList<UVCDeviceInfo>& cameras, int status)
{
    emit sigCameraDeviceUpdateWithoutHid(cameras, status);
}

void DeviceNotify::camerasChanged(const QList<UVCDeviceInfo>& cameras,
                                  const QMap<QString, HidDevices>& deviceHidMaps, int status)
{
    emit sigCameraDeviceUpdate(cameras, deviceHidMaps, status);
}
