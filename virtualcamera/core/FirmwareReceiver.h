#pragma once

#include "Frame.h"

namespace virtualcamera {

/// Collects the numbered packets of one firmware transfer.
class FirmwareReceiver
{
public:
    /// A start always begins a new transfer: the host repeats it when it missed the answer.
    void start();
    /// Ok when the packet was accepted or repeats the last one, otherwise the reason for refusing
    /// it.
    Verdict takePacket(const Request& packet);
    /// Ends the transfer; false when none was running.
    bool finish();

    bool isReceiving() const { return m_receiving; }
    /// Whether the packet marked as the last one has arrived.
    bool isComplete() const { return m_complete; }
    /// The bytes of the running or the last transfer.
    const Bytes& image() const { return m_image; }
    std::uint32_t packetCount() const { return m_lastPacket; }

private:
    bool m_receiving = false;
    bool m_complete = false;
    std::uint32_t m_lastPacket = 0;
    Bytes m_image;
};

} // namespace virtualcamera
