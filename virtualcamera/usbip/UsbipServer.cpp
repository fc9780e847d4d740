#include "UsbipServer.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/time.h>
#include <system_error>

namespace virtualcamera {

namespace {

/// Hosts are served one after the other; one that sends nothing must not block the others.
constexpr time_t kHostTimeoutMs = 2000;

FileDescriptor listenAt(const std::string& address, std::uint16_t port)
{
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_port = htons(port);
    if (::inet_pton(AF_INET, address.c_str(), &place.sin_addr) != 1)
        throw std::invalid_argument("not an IPv4 address: " + address);
    FileDescriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const int on = 1;
    if (!socket || ::setsockopt(socket.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0 ||
        ::bind(socket.get(), reinterpret_cast<const sockaddr*>(&place), sizeof place) != 0 ||
        ::listen(socket.get(), 16) != 0)
        throw std::system_error(errno, std::generic_category(),
                                address + ':' + std::to_string(port));
    return socket;
}

bool receiveAll(const FileDescriptor& socket, std::uint8_t* to, std::size_t size)
{
    return ::recv(socket.get(), to, size, MSG_WAITALL) == static_cast<ssize_t>(size);
}

void sendAll(const FileDescriptor& socket, const Bytes& bytes)
{
    // When this fails, the host has gone or does not read; the connection is closed in any case.
    static_cast<void>(::send(socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL));
}

} // namespace

UsbipServer::UsbipServer(UsbipBus& bus, const std::string& address, std::uint16_t port)
    : m_bus(bus)
    , m_listener(listenAt(address, port))
    , m_thread([this] { acceptHosts(); })
{
}

UsbipServer::~UsbipServer()
{
    ::shutdown(m_listener.get(), SHUT_RDWR);
    m_thread.join();
}

std::uint16_t UsbipServer::port() const
{
    sockaddr_in place{};
    socklen_t size = sizeof place;
    ::getsockname(m_listener.get(), reinterpret_cast<sockaddr*>(&place), &size);
    return ntohs(place.sin_port);
}

void UsbipServer::acceptHosts()
{
    while (FileDescriptor socket = acceptConnection(m_listener)) {
        const timeval timeout{kHostTimeoutMs / 1000, 0};
        ::setsockopt(socket.get(), SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof timeout);
        ::setsockopt(socket.get(), SOL_SOCKET, SO_SNDTIMEO, &timeout, sizeof timeout);
        const int on = 1;
        ::setsockopt(socket.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        serve(std::move(socket));
    }
}

void UsbipServer::serve(FileDescriptor socket)
{
    std::array<std::uint8_t, usbip::kOperationSize> header{};
    if (!receiveAll(socket, header.data(), header.size()))
        return;
    const usbip::Operation request = usbip::Operation::parse(header.data());
    if (request.version != usbip::kVersion)
        return;
    if (request.code == usbip::kRequestDeviceList) {
        list(socket);
        return;
    }
    std::array<std::uint8_t, usbip::kBusIdSize> name{};
    if (request.code != usbip::kRequestImport || !receiveAll(socket, name.data(), name.size()))
        return;
    const std::string busId(name.begin(), std::find(name.begin(), name.end(), 0));
    try {
        if (m_bus.exportTo(socket, busId))
            return;
    } catch (const std::runtime_error&) {
        return; // the camera left the bus, or the host disconnected, during the import
    }
    usbip::Operation refusal;
    refusal.code = usbip::kReplyImport;
    refusal.status = 1;
    sendAll(socket, refusal.encode());
}

void UsbipServer::list(const FileDescriptor& socket)
{
    const std::vector<UsbipBus::Listing> devices = m_bus.listing();
    usbip::Operation reply;
    reply.code = usbip::kReplyDeviceList;
    Bytes bytes = reply.encode();
    for (unsigned shift = 32; shift > 0;) {
        shift -= 8;
        bytes.push_back(static_cast<std::uint8_t>(devices.size() >> shift & 0xFFU));
    }
    for (const UsbipBus::Listing& device : devices) {
        const Bytes record = device.record.encode();
        bytes.insert(bytes.end(), record.begin(), record.end());
        for (const InterfaceClass& kind : device.interfaces)
            bytes.insert(bytes.end(), {kind.code, kind.subclass, kind.protocol, 0});
    }
    sendAll(socket, bytes);
}

} // namespace virtualcamera
