#pragma once

#include "UVCDeviceInfo.h"

#include <QList>

/// The hot-plug notifications that the list has not served yet. A camera with a loose cable makes
/// more of them than the list can serve one by one, because each rebuild takes half a second. So
/// all that wait are served by one rebuild. Plain logic.
class PendingNotifications
{
public:
    /// @param cameras the video devices at the time of the notification
    /// @param status  HotPlugStatus
    void add(const QList<UVCDeviceInfo>& cameras, int status);

    [[nodiscard]] bool isEmpty() const { return !m_anyArrival && !m_anyRemoval; }

    struct Batch
    {
        QList<UVCDeviceInfo> cameras; ///< those of the newest notification
        /// Each HotPlugStatus at most once. A removal comes first: what is there now has come after
        /// what has gone.
        QList<int> statuses;
    };
    /// Empties the queue.
    [[nodiscard]] Batch take();

private:
    QList<UVCDeviceInfo> m_cameras;
    bool m_anyArrival = false;
    bool m_anyRemoval = false;
};
