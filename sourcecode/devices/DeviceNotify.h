#pragma once

#include "IDeviceNotify.h"

#include <QObject>

/// Turns hot-plug notifications into signals. They are emitted on the watcher's thread, so
/// receivers on the GUI thread get them queued.
class DeviceNotify : public QObject, public IDeviceNotify
{
    Q_OBJECT

public:
    explicit DeviceNotify(QObject* parent = nullptr);

    void camerasChanged(const QList<UVCDeviceInfo>& cameras, int status) override;
    void camerasChanged(const QList<UVCDeviceInfo>& cameras,
                        const QMap<QString, HidDevices>& deviceHidMaps, int status) override;

signals:
    /// @param status 0 = a device was plugged in, 1 = one was removed
    void sigCameraDeviceUpdateWithoutHid(QList<UVCDeviceInfo> Cameras, int status);
    void sigCameraDeviceUpdate(QList<UVCDeviceInfo> Cameras,
                               QMap<QString, HidDevices> deviceHidMaps, int status);
};
