#include "CameraHandle.h"

#include "LogCategories.h"
#include "UVCCamera.h"

CameraHandle& CameraHandle::instance()
{
    // C++ guarantees that a local static is created once, whichever threads call first.
    static CameraHandle handle;
    return handle;
}

void CameraHandle::getCameras(int status)
{
    qCDebug(hotplugLog) << "CameraHandle::getCameras" << __LINE__ << "获取设备";
    m_cameras.clear();
    UVCCamera::enumerateCameras(m_cameras);

    const std::lock_guard<std::mutex> lock(m_notifyMutex);
    if (m_notify)
        m_notify->camerasChanged(m_cameras, status);
}

void CameraHandle::setNotify(IDeviceNotify* notify)
{
    const std::lock_guard<std::mutex> lock(m_notifyMutex);
    m_notify = notify;
}
