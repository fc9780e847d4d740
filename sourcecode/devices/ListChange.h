#pragma once

#include "HidDevices.h"

#include <QList>
#include <QMap>
#include <QString>

/// What a change of the devices means for the camera that is open. Plain logic.
///
/// Interfaces are compared by their paths, not by their number: within the pause before the list
/// enumerates, one camera can leave and another one arrive.
class ListChange
{
public:
    enum class Meaning {
        Nothing,
        CameraLeft,   ///< the camera that is open has left the bus
        CameraArrived ///< a camera has come that may be one that returns from an update
    };

    /// @param present the HID interfaces now, by path
    /// @param before  the HID interfaces at the previous enumeration
    /// @param status  HotPlugStatus
    ListChange(const QMap<QString, HidDevices>& present, const QMap<QString, HidDevices>& before,
               int status);

    /// Whether other supported cameras are there than before.
    [[nodiscard]] bool concernsCameras() const { return m_anyLeft || !m_arrived.isEmpty(); }

    /// Whether a device was plugged in and yet the same interfaces are there as before: one of them
    /// has left and returned within the pause.
    [[nodiscard]] bool isReplug() const;

    /// The control interfaces of all supported cameras, in key order.
    [[nodiscard]] const QList<HidDevices>& cameras() const { return m_cameras; }
    /// Those of cameras() that were not there before.
    [[nodiscard]] const QList<HidDevices>& arrived() const { return m_arrived; }
    /// Those of cameras() that were there before.
    [[nodiscard]] QList<HidDevices> camerasThatStayed() const;
    /// The last entry of cameras(). Its path is empty when cameras() is empty.
    [[nodiscard]] HidDevices lastCamera() const
    {
        return m_cameras.isEmpty() ? HidDevices() : m_cameras.last();
    }

    [[nodiscard]] bool isPresent(const QString& hidPath) const
    {
        return m_present.contains(hidPath);
    }

    /// @param openHidPath of the camera that is open; empty when none is
    [[nodiscard]] Meaning meaningFor(const QString& openHidPath) const;

private:
    QMap<QString, HidDevices> m_present;
    bool m_samePaths;
    QList<HidDevices> m_cameras;
    QList<HidDevices> m_arrived;
    bool m_anyLeft = false;
    int m_status;
};
