#pragma once

#include "FileDescriptor.h"
#include "UsbipWire.h"

#include <string>

namespace virtualcamera {

/// The virtual host controller of this machine's kernel (module vhci-hcd). It takes a connected
/// USB/IP socket over.
class VhciPort
{
public:
    explicit VhciPort(std::string folder = "/sys/devices/platform/vhci_hcd.0")
        : m_folder(std::move(folder))
    {
    }

    /// Attaches the device to the port with its number. A port stays occupied for a moment after a
    /// device has left it, so this tries for some seconds. Throws std::system_error.
    void attach(const FileDescriptor& socket, const usbip::DeviceRecord& device) const;

private:
    std::string m_folder;
};

} // namespace virtualcamera
