#include "DeviceManager.h"
#include "HotPlugWatch.h"
#include "SDMMNotificationClient.h"

#include <QDebug>

namespace {

void letGo(SDMMNotificationClient* client)
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
        qCritical() << "DeviceManager::detecting" << __LINE__ << "注册窗口类失败";
        return;
    }
    if (!m_watch->createWindow()) {
        qCritical() << "DeviceManager::detecting" << __LINE__ << "创建窗口失败";
        m_watch->destroyWindow();
        return;
    }
    while (m_running != 0) {
        if (m_watch->wait() == HotPlugWatch::Event::Failed) {
            qCritical() << "DeviceManager::detecting" << __LINE__ << "device monitor failed";
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
        qCritical() << "DeviceManager::initIMMDeviceEnumerator"
                    << "接口创建失败";
        return;
    }
    qCritical() << "DeviceManager::initIMMDeviceEnumerator"
                << "接口创建成功";
    if (!m_audioClient)
        m_audioClient = {new SDMMNotificationClient, letGo};
    const bool registered = m_audioClient->registerCallback(std::move(enumerator));
    qCritical() << "DeviceManager::initIMMDeviceEnumerator"
                << (registered ? "注册成功" : "注册失败");
}
