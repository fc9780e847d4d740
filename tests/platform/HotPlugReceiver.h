#pragma once

#include "CameraHandle.h"
#include "IDeviceNotify.h"

#include <mutex>
#include <QThread>
#include <QVector>
#include <vector>

/// Receives every hot-plug notification during its lifetime, in place of the device list.
class HotPlugReceiver : public IDeviceNotify
{
public:
    struct Notification
    {
        QList<UVCDeviceInfo> cameras;
        int status = -1;
        QThread* thread = nullptr;
    };

    HotPlugReceiver() { CameraHandle::instance().setNotify(this); }
    ~HotPlugReceiver() override { CameraHandle::instance().setNotify(nullptr); }
    HotPlugReceiver(const HotPlugReceiver&) = delete;
    HotPlugReceiver& operator=(const HotPlugReceiver&) = delete;

    void camerasChanged(const QList<UVCDeviceInfo>& cameras, int status) override
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_notifications.push_back({cameras, status, QThread::currentThread()});
    }
    void camerasChanged(const QList<UVCDeviceInfo>& cameras, const QMap<QString, HidDevices>&,
                        int status) override
    {
        camerasChanged(cameras, status);
    }

    [[nodiscard]] std::vector<Notification> notifications() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_notifications;
    }
    [[nodiscard]] int count() const { return static_cast<int>(notifications().size()); }
    [[nodiscard]] QVector<int> statuses() const
    {
        QVector<int> result;
        for (const Notification& notification : notifications())
            result.append(notification.status);
        return result;
    }

private:
    mutable std::mutex m_mutex;
    std::vector<Notification> m_notifications;
};
