#pragma once

#include <cstdint>
#include <string>

namespace virtualcamera {

/// The ids of the camera. They are deliberately not taken from the product's table of models: the
/// virtual camera is an independent implementation of the device, so a wrong id in the product
/// makes tests fail.
constexpr std::uint16_t kVendorId = 0xB206;
constexpr std::uint16_t kProductId = 0xB215;

/// How the camera identifies itself on the bus.
struct CameraIdentity
{
    std::string card = "NOVA EDGE";
    std::string product = "NOVA EDGE";
    std::string manufacturer = "Sorvanta";
    /// The USB string; the serial number of the HID command can differ from it.
    std::string usbSerial;
    std::uint16_t vendorId = kVendorId;
    std::uint16_t productId = kProductId;
    /// Whether the video node has a USB device above it.
    bool onUsb = true;
    /// The socket of the root hub it is plugged into.
    int port = 1;

    /// "0000:00:14.0-1", as in the kernel's physical paths.
    std::string usbLocation() const;
    std::string videoBusInfo() const;
    std::string hidName() const;
    std::string hidPhysicalPath() const;
};

/// A text that fits a USB string descriptor: no control characters, at most 126 bytes.
std::string usbString(const std::string& text);

} // namespace virtualcamera
