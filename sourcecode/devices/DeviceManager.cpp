#include "DeviceManager.h"

#include "CameraHandle.h"
#include "HotPlugWatch.h"
#include "LogCategories.h"
#include "SDMMNotificationClient.h"

DeviceManager::DeviceManager()
    : m_watch(std::make_unique<HotPlugWatch>())
{
    // The watcher calls the camera handle until it ends, so the handle must be created before it
    // and destroyed after it.
    CameraHandle::instance();
}

DeviceManager::~DeviceManager()
{
    stop();
}

DeviceManager& DeviceManager::instance()
{
    // C++ guarantees that a local static is created once, whichever threads call first.
    static DeviceManager manager;
    return manager;
}

void DeviceManager::start()
{
    int stopped = 0;
    if (m_running.compare_exchange_strong(stopped, 1)) {
        // From here on the platform queues events, so none is lost before the thread starts to
        // wait.
        m_watch->open();
        m_thread = std::thread(&DeviceManager::detecting, this);
    }
    initIMMDeviceEnumerator();
}

void DeviceManager::stop()
{
    m_audioClient.reset();
    if (m_running.exchange(0) == 0)
        return;
    m_watch->wake();
    m_thread.join();
    m_watch->close();
}

void DeviceManager::deviceArrived()
{
    qCDebug(hotplugLog) << "DeviceManager::WndProc" << __LINE__ << "检测到插入设备";
    CameraHandle::instance().getCameras(DevicePluggedIn);
}

void DeviceManager::deviceRemoved()
{
    qCDebug(hotplugLog) << "DeviceManager::WndProc" << __LINE__ << "检测到拔出设备";
    CameraHandle::instance().getCameras(DeviceRemoved);
}
