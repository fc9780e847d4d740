#pragma once

#include "FileDescriptor.h"
#include "UsbipBus.h"

#include <string>
#include <thread>

namespace virtualcamera {

/// Offers the cameras of a bus to hosts over TCP: lists them and gives a camera to the host that
/// imports it.
class UsbipServer
{
public:
    /// `address` is an IPv4 address; port 0 chooses a free port. Throws std::system_error, and
    /// std::invalid_argument for a bad address.
    UsbipServer(UsbipBus& bus, const std::string& address, std::uint16_t port);
    ~UsbipServer();
    UsbipServer(const UsbipServer&) = delete;
    UsbipServer& operator=(const UsbipServer&) = delete;

    std::uint16_t port() const;

private:
    void acceptHosts();
    void serve(FileDescriptor socket);
    void list(const FileDescriptor& socket);

    UsbipBus& m_bus;
    FileDescriptor m_listener;
    std::thread m_thread;
};

} // namespace virtualcamera
