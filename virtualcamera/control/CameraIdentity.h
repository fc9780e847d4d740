#pragma once

#include <cstdint>
#include <string>

namespace virtualcamera {

/// What the camera says about itself on the bus.
struct CameraIdentity
{
    std::string card = "NOVA EDGE";
    std::string product = "NOVA EDGE";
    std::string manufacturer = "Sorvanta";
    /// The USB string; the serial number of the HID command can differ from it.
    std::string usbSerial;
    std::uint16_t vendorId = 0xB206;
    std::uint16_t productId = 0xB215;
    /// Whether the video node has a USB device above it.
    bool onUsb = true;
    /// The socket of the root hub it is plugged into.
    int port = 1;

    /// "0000:00:14.0-1", as the kernel puts it into physical paths.
    std::string usbLocation() const;
    std::string videoBusInfo() const;
    std::string hidName() const;
    std::string hidPhysicalPath() const;
};

/// A text as a USB string descriptor could hold it: no control characters, not longer than 126.
std::string usbString(const std::string& text);

} // namespace virtualcamera
