#include "DeviceManager.h"

#include "CameraHandle.h"
#include "HotPlugWatch.h"
#include "SDMMNotificationClient.h"

#include <QDebug>

DeviceManager::DeviceManager()
    : m_watch(std::make_unique<HotPlugWatch>())
{
    // The watcher calls the camera handle to its end, so that must be there first and go last.
    CameraHandle::instance();
}

DeviceManager::~DeviceManager()
{
    stop();
}

DeviceManager& DeviceManager::instance()
{
    // The language locks and checks twice for a local static.
    static DeviceManager manager;
    return manager;
}

void DeviceManager::start()
{
    int stopped = 0;
    if (m_running.compare_exchange_strong(stopped, 1)) {
        // From here on events are queued by the platform, so none between now and the thread's
        // first look is lost.
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
    qDebug() << "DeviceManager::WndProc" << __LINE__ << "检测到插入设备";
    CameraHandle::instance().getCameras(DevicePluggedIn);
}

void DeviceManager::deviceRemoved()
{
    qDebug() << "DeviceManager::WndProc" << __LINE__ << "检测到拔出设备";
    CameraHandle::instance().getCameras(DeviceRemoved);
}
