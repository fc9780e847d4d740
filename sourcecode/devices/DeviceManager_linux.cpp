#include "DeviceManager.h"
#include "HotPlugWatch.h"
#include "SDMMNotificationClient.h"

#include <QDebug>

void DeviceManager::detecting()
{
    if (!m_watch->isOpen()) {
        qCritical() << "DeviceManager::detecting" << __LINE__ << "创建窗口失败";
        return;
    }
    while (m_running != 0) {
        switch (m_watch->wait()) {
        case HotPlugWatch::Event::Arrival:
            deviceArrived();
            break;
        case HotPlugWatch::Event::Removal:
            deviceRemoved();
            break;
        case HotPlugWatch::Event::Failed:
            qCritical() << "DeviceManager::detecting" << __LINE__ << "device monitor failed";
            return;
        case HotPlugWatch::Event::Other:
        case HotPlugWatch::Event::Woken:
            break;
        }
    }
}

void DeviceManager::initIMMDeviceEnumerator()
{
    // A connection registers once; a second registration needs a connection of its own.
    m_audioClient = std::make_unique<SDMMNotificationClient>();
    m_audioClient->registerCallback();
}
