#include "ControlPipe.h"

#include "core/ReportDescriptor.h"

namespace virtualcamera {

namespace {

constexpr unsigned kTypeMask = 0x60;
constexpr unsigned kClassRequest = 0x20;
constexpr unsigned kStandardRequest = 0x00;
constexpr unsigned kRecipientMask = 0x1F;
constexpr unsigned kToInterface = 1;

constexpr std::uint8_t kGetStatus = 0;
constexpr std::uint8_t kClearFeature = 1;
constexpr std::uint8_t kSetFeature = 3;
constexpr std::uint8_t kGetDescriptor = 6;
constexpr std::uint8_t kGetConfiguration = 8;
constexpr std::uint8_t kSetConfiguration = 9;
constexpr std::uint8_t kGetInterface = 10;
constexpr std::uint8_t kSetInterface = 11;

constexpr std::uint8_t kHidGetReport = 1;
constexpr std::uint8_t kHidSetReport = 9;
constexpr std::uint8_t kHidSetIdle = 10;
constexpr std::uint8_t kInputReport = 1;
constexpr std::uint8_t kOutputReport = 2;

std::uint8_t high(std::uint16_t value)
{
    return static_cast<std::uint8_t>(value >> 8U);
}

std::uint8_t low(std::uint16_t value)
{
    return static_cast<std::uint8_t>(value & 0xFFU);
}

} // namespace

ControlAnswer ControlPipe::handle(const UsbDescriptors& descriptors, const SetupPacket& setup,
                                  const Bytes& data)
{
    const unsigned type = setup.requestType & kTypeMask;
    if (type == kStandardRequest)
        return standard(descriptors, setup);
    if (type != kClassRequest || (setup.requestType & kRecipientMask) != kToInterface)
        return ControlAnswer::stall();
    const std::uint8_t interface = low(setup.index);
    if (interface == descriptors.videoControl())
        return m_unit.request(setup, data);
    if (interface == descriptors.videoStreaming())
        return m_video.request(setup, data);
    if (interface == descriptors.hidInterface())
        return hidRequest(setup, data);
    return ControlAnswer::stall();
}

ControlAnswer ControlPipe::standard(const UsbDescriptors& descriptors, const SetupPacket& setup)
{
    const bool toInterface = (setup.requestType & kRecipientMask) == kToInterface;
    switch (setup.request) {
    case kGetDescriptor:
        return toInterface ? interfaceDescriptor(descriptors, setup)
                           : descriptor(descriptors, setup);
    case kGetStatus:
        return {false, {0, 0}};
    case kClearFeature:
    case kSetFeature:
        return {};
    case kGetConfiguration:
        return {false, {m_configuration}};
    case kSetConfiguration:
        if (setup.value > 1)
            return ControlAnswer::stall();
        m_configuration = low(setup.value);
        m_video.setStreaming(false);
        return {};
    case kGetInterface: {
        const bool streams =
            low(setup.index) == descriptors.videoStreaming() && m_video.isStreaming();
        return {false, {static_cast<std::uint8_t>(streams ? 1 : 0)}};
    }
    case kSetInterface:
        return setInterface(descriptors, setup);
    default:
        return ControlAnswer::stall();
    }
}

ControlAnswer ControlPipe::descriptor(const UsbDescriptors& descriptors,
                                      const SetupPacket& setup) const
{
    switch (high(setup.value)) {
    case 1:
        return {false, descriptors.device()};
    case 2:
        if (low(setup.value) == 0)
            return {false, descriptors.configuration()};
        break;
    case 3:
        if (const auto text = descriptors.string(low(setup.value)))
            return {false, *text};
        break;
    default: // the device has one speed only, so it has no descriptors for another one
        break;
    }
    return ControlAnswer::stall();
}

ControlAnswer ControlPipe::interfaceDescriptor(const UsbDescriptors& descriptors,
                                               const SetupPacket& setup) const
{
    if (low(setup.index) != descriptors.hidInterface())
        return ControlAnswer::stall();
    switch (high(setup.value)) {
    case 0x21:
        return {false, descriptors.hid()};
    case 0x22:
        return {false, reportDescriptor()};
    default:
        return ControlAnswer::stall();
    }
}

ControlAnswer ControlPipe::setInterface(const UsbDescriptors& descriptors, const SetupPacket& setup)
{
    const std::uint16_t alternate = setup.value;
    if (low(setup.index) == descriptors.videoStreaming() && alternate <= 1) {
        m_video.setStreaming(alternate == 1);
        return {};
    }
    if (low(setup.index) < descriptors.interfaces().size() && alternate == 0)
        return {};
    return ControlAnswer::stall();
}

ControlAnswer ControlPipe::hidRequest(const SetupPacket& setup, const Bytes& data)
{
    switch (setup.request) {
    case kHidSetReport:
        if (high(setup.value) != kOutputReport || !m_hid.takeReport(data))
            return ControlAnswer::stall();
        return {};
    case kHidGetReport:
        if (high(setup.value) != kInputReport || low(setup.value) != kReportId)
            return ControlAnswer::stall();
        return {false, m_hid.lastReport()};
    case kHidSetIdle:
        return {};
    default:
        return ControlAnswer::stall();
    }
}

} // namespace virtualcamera
