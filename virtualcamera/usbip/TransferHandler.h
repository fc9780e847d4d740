#pragma once

#include "UsbTypes.h"

namespace virtualcamera {

/// The device at the end of a link to a host. Called on the link's thread.
class TransferHandler
{
public:
    virtual ~TransferHandler() = default;
    /// A control transfer; `data` is what the host sent.
    virtual ControlAnswer control(const SetupPacket& setup, const Bytes& data) = 0;
    /// What the host sent to an OUT endpoint; false stalls it.
    virtual bool output(std::uint8_t endpoint, const Bytes& data) = 0;
    virtual bool hasInput(std::uint8_t endpoint) const = 0;
    /// A command was answered or queued: what it brought about may be sent now.
    virtual void settle() = 0;
    /// The host has let the device go. The last call.
    virtual void hostLeft() = 0;
};

} // namespace virtualcamera
