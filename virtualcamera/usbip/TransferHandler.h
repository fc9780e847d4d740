#pragma once

#include "UsbTypes.h"

namespace virtualcamera {

/// The device behind a link to a host. Called on the link's thread.
class TransferHandler
{
public:
    virtual ~TransferHandler() = default;
    /// Handles a control transfer; `data` is what the host sent.
    virtual ControlAnswer control(const SetupPacket& setup, const Bytes& data) = 0;
    /// Handles data that the host sent to an OUT endpoint; false stalls the endpoint.
    virtual bool output(std::uint8_t endpoint, const Bytes& data) = 0;
    virtual bool hasInput(std::uint8_t endpoint) const = 0;
    /// Called after a command was answered or queued: its results may be sent now.
    virtual void settle() = 0;
    /// Called last, when the host has released the device.
    virtual void hostLeft() = 0;
};

} // namespace virtualcamera
