#pragma once

#include "core/Device.h"
#include "UsbTypes.h"

namespace virtualcamera {

/// Handles requests to the video control interface: the picture controls of the processing unit,
/// and the error code of the last refusal. Called with the bus locked.
class ProcessingUnit
{
public:
    explicit ProcessingUnit(Device& device)
        : m_device(device)
    {
    }

    /// A camera without an amplifier has no processing unit.
    void setPresent(bool present) { m_present = present; }
    /// Handles a class request; the upper byte of the index is the entity.
    ControlAnswer request(const SetupPacket& setup, const Bytes& data);

private:
    ControlAnswer refuse(std::uint8_t reason);
    ControlAnswer access(const ControlInfo& info, std::uint8_t request, const Bytes& data);

    Device& m_device;
    bool m_present = true;
    std::uint8_t m_lastRefusal = 0;
};

} // namespace virtualcamera
