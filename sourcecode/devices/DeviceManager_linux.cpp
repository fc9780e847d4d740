#include "DeviceManager.h"
#include "HotPlugWatch.h"
#include "LogCategories.h"
#include "SDMMNotificationClient.h"

void DeviceManager::detecting()
{
    if (!m_watch->isOpen()) {
        qCCritical(hotplugLog) << "DeviceManager::detecting" << __LINE__
                               << "the udev monitor cannot be opened";
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
            qCCritical(hotplugLog)
                << "DeviceManager::detecting" << __LINE__ << "device monitor failed";
            return;
        case HotPlugWatch::Event::Other:
        case HotPlugWatch::Event::Woken:
        case HotPlugWatch::Event::TimedOut:
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
