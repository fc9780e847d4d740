#include "ProcessingUnit.h"

#include "ByteWriter.h"
#include "UsbDescriptors.h"
#include "UvcRequests.h"

#include <algorithm>

namespace virtualcamera {

namespace {

constexpr std::uint8_t kInterfaceItself = 0;
constexpr std::uint8_t kRequestErrorCode = 2;

/// Brightness is signed in the protocol, the others are not.
int decode(Control control, const Bytes& data)
{
    const std::uint16_t raw = loadLittleEndian16(data.data());
    return control == Control::Brightness ? static_cast<std::int16_t>(raw) : raw;
}

ControlAnswer number(int value)
{
    return {false, ByteWriter().word(static_cast<unsigned>(value)).take()};
}

} // namespace

ControlAnswer ProcessingUnit::request(const SetupPacket& setup, const Bytes& data)
{
    const auto wanted = static_cast<std::uint8_t>(setup.index >> 8U);
    const auto selector = static_cast<std::uint8_t>(setup.value >> 8U);
    if (wanted == kInterfaceItself && selector == kRequestErrorCode) {
        if (setup.request == uvc::kGetInfo)
            return {false, {0x01}};
        return {false, {m_lastRefusal}};
    }
    if (!m_present || wanted != entity::kProcessingUnit)
        return refuse(uvc::kInvalidUnit);
    const auto& controls = processingControls();
    const auto control =
        std::find_if(controls.begin(), controls.end(), [selector](const ProcessingControl& each) {
            return each.selector == selector;
        });
    if (control == controls.end())
        return refuse(uvc::kInvalidControl);
    return access(controlInfos()[static_cast<std::size_t>(control->control)], setup.request, data);
}

ControlAnswer ProcessingUnit::access(const ControlInfo& info, std::uint8_t request,
                                     const Bytes& data)
{
    const ControlRange& range = m_device.range(info.control);
    switch (request) {
    case uvc::kSetCurrent: {
        if (m_device.faults().isActive(FaultKind::ControlError))
            return refuse(uvc::kUnknownRefusal);
        if (data.size() != 2)
            return refuse(uvc::kInvalidRequest);
        const int value = decode(info.control, data);
        if (value < range.minimum || value > range.maximum)
            return refuse(uvc::kOutOfRange);
        m_device.current()[info.control] =
            range.minimum + (value - range.minimum) / range.step * range.step;
        m_lastRefusal = 0;
        return {};
    }
    case uvc::kGetCurrent:
        return number(m_device.current()[info.control]);
    case uvc::kGetMinimum:
        return number(range.minimum);
    case uvc::kGetMaximum:
        return number(range.maximum);
    case uvc::kGetResolution:
        return number(range.step);
    case uvc::kGetDefault:
        return number(range.defaultValue);
    case uvc::kGetLength:
        return number(2);
    case uvc::kGetInfo:
        return {false, {uvc::kReadsAndWrites}};
    default:
        return refuse(uvc::kInvalidRequest);
    }
}

ControlAnswer ProcessingUnit::refuse(std::uint8_t reason)
{
    m_lastRefusal = reason;
    return ControlAnswer::stall();
}

} // namespace virtualcamera
