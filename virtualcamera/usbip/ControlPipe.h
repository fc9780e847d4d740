#pragma once

#include "HidFunction.h"
#include "ProcessingUnit.h"
#include "UsbDescriptors.h"
#include "VideoFunction.h"

namespace virtualcamera {

/// Endpoint 0: answers the standard requests itself and passes class requests to the function of
/// that class. Called with the bus locked.
class ControlPipe
{
public:
    ControlPipe(ProcessingUnit& unit, VideoFunction& video, HidFunction& hid)
        : m_unit(unit)
        , m_video(video)
        , m_hid(hid)
    {
    }

    ControlAnswer handle(const UsbDescriptors& descriptors, const SetupPacket& setup,
                         const Bytes& data);
    /// Called when the device has appeared on the bus.
    void reset() { m_configuration = 0; }

private:
    ControlAnswer descriptor(const UsbDescriptors& descriptors, const SetupPacket& setup) const;
    ControlAnswer interfaceDescriptor(const UsbDescriptors& descriptors,
                                      const SetupPacket& setup) const;
    ControlAnswer standard(const UsbDescriptors& descriptors, const SetupPacket& setup);
    ControlAnswer setInterface(const UsbDescriptors& descriptors, const SetupPacket& setup);
    ControlAnswer hidRequest(const SetupPacket& setup, const Bytes& data);

    ProcessingUnit& m_unit;
    VideoFunction& m_video;
    HidFunction& m_hid;
    std::uint8_t m_configuration = 0;
};

} // namespace virtualcamera
