#pragma once

#include "DeviceWidgetInfo.h"
#include "IDeviceNotify.h"

#include <mutex>
#include <QList>

/// The process-wide holder of the video inventory: enumerates on request and notifies the receiver.
class CameraHandle
{
public:
    /// Created on first use; callable on any thread.
    static CameraHandle& instance();

    CameraHandle(const CameraHandle&) = delete;
    CameraHandle& operator=(const CameraHandle&) = delete;

    /// Enumerates the video devices and notifies the receiver, if there is one. Called on the
    /// watcher's thread, and only there: the list of cameras is not locked.
    /// @param status HotPlugStatus
    void getCameras(int status);

    /// The receiver of notifications, or null. Not owned. When this returns, no call to the
    /// previous receiver is under way or will come.
    void setNotify(IDeviceNotify* notify);

    /// The device that the pages work on. GUI thread.
    [[nodiscard]] DeviceWidgetInfo currentDevice() const { return m_currentDevice; }
    void setCurrentDevice(const DeviceWidgetInfo& device) { m_currentDevice = device; }

private:
    CameraHandle() = default;

    QList<UVCDeviceInfo> m_cameras;
    DeviceWidgetInfo m_currentDevice;
    std::mutex m_notifyMutex;
    IDeviceNotify* m_notify = nullptr;
};
