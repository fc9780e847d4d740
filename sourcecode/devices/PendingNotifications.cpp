#include "PendingNotifications.h"

#include "IDeviceNotify.h"

#include <utility>

void PendingNotifications::add(const QList<UVCDeviceInfo>& cameras, int status)
{
    m_cameras = cameras;
    if (status == DeviceRemoved)
        m_anyRemoval = true;
    else
        m_anyArrival = true;
}

PendingNotifications::Batch PendingNotifications::take()
{
    Batch batch;
    batch.cameras = std::exchange(m_cameras, {});
    if (std::exchange(m_anyRemoval, false))
        batch.statuses.append(DeviceRemoved);
    if (std::exchange(m_anyArrival, false))
        batch.statuses.append(DevicePluggedIn);
    return batch;
}
