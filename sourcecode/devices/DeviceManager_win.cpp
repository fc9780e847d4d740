#include "DeviceManager.h"
#include "HotPlugWatch.h"
#include "LogCategories.h"
#include "SDMMNotificationClient.h"

namespace {

void unregisterAndRelease(SDMMNotificationClient* client)
{
    client->unregisterCallback();
    client->Release();
}

} // namespace

void DeviceManager::detecting()
{
    // The enumeration of video devices runs here, on every arrival and removal.
    const ComApartment com;
    if (!m_watch->registerWindowClass()) {
        qCCritical(hotplugLog) << "DeviceManager::detecting" << __LINE__ << "注册窗口类失败";
        return;
    }
    if (!m_watch->createWindow()) {
        qCCritical(hotplugLog) << "DeviceManager::detecting" << __LINE__ << "创建窗口失败";
        m_watch->destroyWindow();
        return;
    }
    while (m_running != 0) {
        if (m_watch->wait() == HotPlugWatch::Event::Failed) {
            qCCritical(hotplugLog)
                << "DeviceManager::detecting" << __LINE__ << "device monitor failed";
            break;
        }
    }
    m_watch->destroyWindow();
}

void DeviceManager::initIMMDeviceEnumerator()
{
    const ComApartment com;
    ComPtr<IMMDeviceEnumerator> enumerator;
    if (FAILED(::CoCreateInstance(__uuidof(MMDeviceEnumerator), nullptr, CLSCTX_SERVER,
                                  __uuidof(IMMDeviceEnumerator), enumerator.putVoid()))) {
        qCCritical(hotplugLog) << "DeviceManager::initIMMDeviceEnumerator"
                               << "接口创建失败";
        return;
    }
    qCCritical(hotplugLog) << "DeviceManager::initIMMDeviceEnumerator"
                           << "接口创建成功";
    if (!m_audioClient)
        m_audioClient = {new SDMMNotificationClient, unregisterAndRelease};
    const bool registered = m_audioClient->registerCallback(std::move(enumerator));
    qCCritical(hotplugLog) << "DeviceManager::initIMMDeviceEnumerator"
                           << (registered ? "注册成功" : "注册失败");
}
