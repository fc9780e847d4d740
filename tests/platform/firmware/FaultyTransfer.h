#pragma once

#include "FirmwareCamera.h"
#include "TransferFault.h"

#include <QByteArray>

/// A transfer of five packets that a fault strikes.
class FaultyTransfer
{
public:
    /// @param fault for the virtual camera; empty for none
    explicit FaultyTransfer(const QString& fault);

    [[nodiscard]] bool sent() const { return m_sent; }
    [[nodiscard]] qint64 elapsedMs() const { return m_elapsedMs; }
    [[nodiscard]] int requests() const { return m_requests; }
    FirmwareCamera& camera() { return m_camera; }

    /// What is wrong with what the camera has afterwards; empty when all is right: it has taken
    /// nothing but the image's bytes in their order, and runs the new version exactly when it has
    /// all of them and was told their end. Ends the camera's faults.
    /// @param hasAll whether it should have all
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
