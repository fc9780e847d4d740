#pragma once

#include "CameraSpec.h"
#include "StreamModes.h"
#include "UsbTypes.h"

#include <optional>

namespace virtualcamera {

/// Entities of the video function, as the descriptors number them.
namespace entity {
constexpr std::uint8_t kCameraTerminal = 1;
constexpr std::uint8_t kProcessingUnit = 2;
constexpr std::uint8_t kOutputTerminal = 3;
} // namespace entity

/// A picture control of the processing unit.
struct ProcessingControl
{
    Control control;
    std::uint8_t selector;
    /// The bit in bmControls of the unit's descriptor.
    unsigned bit;
};
const std::vector<ProcessingControl>& processingControls();

/// Interface class, subclass and protocol.
struct InterfaceClass
{
    std::uint8_t code;
    std::uint8_t subclass;
    std::uint8_t protocol;
};

/// The descriptors of one camera: a composite device of a video function and a HID interface, high
/// speed only.
class UsbDescriptors
{
public:
    explicit UsbDescriptors(const CameraSpec& spec);

    const Bytes& device() const { return m_device; }
    const Bytes& configuration() const { return m_configuration; }
    /// Nothing for an unknown index.
    std::optional<Bytes> string(std::uint8_t index) const;
    const Bytes& hid() const { return m_hid; }

    /// The numbers of the interfaces; nothing when the camera has no such interface.
    std::optional<std::uint8_t> videoControl() const { return m_videoControl; }
    std::optional<std::uint8_t> videoStreaming() const { return m_videoStreaming; }
    std::optional<std::uint8_t> hidInterface() const { return m_hidInterface; }
    const std::vector<InterfaceClass>& interfaces() const { return m_interfaces; }

    static constexpr std::uint16_t kDeviceVersion = 0x0105;
    static constexpr InterfaceClass kDeviceClass{0xEF, 2, 1};

private:
    Bytes makeDevice(const CameraIdentity& identity) const;
    Bytes makeConfiguration(const CameraSpec& spec);
    Bytes makeVideoControl(const CameraSpec& spec);
    Bytes makeVideoStreaming(const StreamModes& modes);
    Bytes makeHidInterface();
    std::uint8_t addInterface(const InterfaceClass& interfaceClass);

    std::vector<std::string> m_strings;
    std::vector<InterfaceClass> m_interfaces;
    std::optional<std::uint8_t> m_videoControl;
    std::optional<std::uint8_t> m_videoStreaming;
    std::optional<std::uint8_t> m_hidInterface;
    Bytes m_hid;
    Bytes m_device;
    Bytes m_configuration;
};

} // namespace virtualcamera
