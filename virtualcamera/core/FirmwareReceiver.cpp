#include "FirmwareReceiver.h"

namespace virtualcamera {

void FirmwareReceiver::start()
{
    m_receiving = true;
    m_complete = false;
    m_lastPacket = 0;
    m_image.clear();
}

Verdict FirmwareReceiver::takePacket(const Request& packet)
{
    if (!m_receiving)
        return Verdict::Violation;
    const bool isLast = packet.dataStatus == static_cast<std::uint8_t>(DataStatus::Final);
    if (!isLast && packet.dataStatus != static_cast<std::uint8_t>(DataStatus::Payload))
        return Verdict::BadDataStatus;
    // Only the last packet may be short; a short one in the middle would shift the following bytes.
    if (packet.payload.empty() || (!isLast && packet.payload.size() != kMaxPayload))
        return Verdict::BadPayload;
    if (m_lastPacket != 0 && packet.packNumber == m_lastPacket)
        return Verdict::Ok; // the host missed the acknowledgement and sent it again
    if (m_complete || packet.packNumber != m_lastPacket + 1)
        return Verdict::BadPackNumber;
    m_image.insert(m_image.end(), packet.payload.begin(), packet.payload.end());
    m_lastPacket = packet.packNumber;
    m_complete = isLast;
    return Verdict::Ok;
}

bool FirmwareReceiver::finish()
{
    const bool wasReceiving = m_receiving;
    m_receiving = false;
    return wasReceiving;
}

} // namespace virtualcamera
