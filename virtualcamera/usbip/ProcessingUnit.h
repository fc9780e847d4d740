#pragma once

#include "core/Device.h"
#include "UsbTypes.h"

namespace virtualcamera {

/// The requests to the video control interface: picture controls of the processing unit, and what
/// the last refusal was about. Called with the bus locked.
class ProcessingUnit
{
public:
    explicit ProcessingUnit(Device& device)
        : m_device(device)
    {
    }

    /// A camera without an amplifier has no processing unit.
    void setPresent(bool present) { m_present = present; }
    /// A class request with the entity in the upper byte of the index.
    ControlAnswer request(const SetupPacket& setup, const Bytes& data);

private:
    ControlAnswer refuse(std::uint8_t reason);
    ControlAnswer access(const ControlInfo& info, std::uint8_t request, const Bytes& data);

    Device& m_device;
    bool m_present = true;
    std::uint8_t m_lastRefusal = 0;
};

} // namespace virtualcamera
