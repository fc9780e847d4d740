#pragma once

#include "NodeSlot.h"

namespace virtualcamera {

struct CameraIdentity;

/// The metadata node that the UVC driver creates beside every capture node. It has the camera's
/// name but no picture, so a program has to check its capabilities in order to skip it.
class MetadataInterface : public NodeBackend
{
public:
    explicit MetadataInterface(const CameraIdentity& identity)
        : m_identity(identity)
    {
    }

    std::unique_ptr<Session> open(std::shared_ptr<Fifo> queue) override;
    void disconnect() { ++m_connection; }

private:
    class MetadataSession;

    const CameraIdentity& m_identity;
    unsigned m_connection = 0;
};

} // namespace virtualcamera
