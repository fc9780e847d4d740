#pragma once

#include "FirmwareCamera.h"
#include "TransferFault.h"

#include <QByteArray>

/// A transfer of five packets with a fault.
class FaultyTransfer
{
public:
    /// @param fault for the virtual camera; empty for none
    explicit FaultyTransfer(const QString& fault);

    [[nodiscard]] bool sent() const { return m_sent; }
    [[nodiscard]] qint64 elapsedMs() const { return m_elapsedMs; }
    [[nodiscard]] int requests() const { return m_requests; }
    FirmwareCamera& camera() { return m_camera; }

    /// Checks the camera after the transfer, and clears its faults. It must have received only
    /// bytes of the image, in order, and must run the new version exactly when it has received all
    /// of them and the end command.
    /// @return what is wrong; empty when nothing is
    /// @param hasAll whether it should have received all bytes
    [[nodiscard]] QByteArray complaint(bool hasAll);

private:
    FirmwareCamera m_camera;
    QByteArray m_image;
    bool m_pulled = false;
    int m_descriptors = 0;
    bool m_sent = false;
    qint64 m_elapsedMs = 0;
    int m_requests = 0;
};

Q_DECLARE_METATYPE(TransferFault)
