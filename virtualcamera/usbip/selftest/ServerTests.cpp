#include "core/Commands.h"
#include "UsbipServer.h"
#include "UsbipTest.h"

#include <algorithm>
#include <arpa/inet.h>
#include <netinet/in.h>
#include <stdexcept>
#include <sys/socket.h>

using namespace virtualcamera;

namespace {

class Server : public UsbipTest
{
protected:
    FileDescriptor connect() const
    {
        FileDescriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
        sockaddr_in place{};
        place.sin_family = AF_INET;
        place.sin_port = htons(m_server.port());
        place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        EXPECT_EQ(::connect(socket.get(), reinterpret_cast<const sockaddr*>(&place), sizeof place),
                  0);
        return socket;
    }

    static Bytes read(const FileDescriptor& socket, std::size_t size)
    {
        Bytes bytes(size);
        const ssize_t count = ::recv(socket.get(), bytes.data(), size, MSG_WAITALL);
        bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
        return bytes;
    }

    static void write(const FileDescriptor& socket, const Bytes& bytes)
    {
        EXPECT_EQ(::send(socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(bytes.size()));
    }

    static Bytes importRequest(const std::string& busId)
    {
        Bytes bytes(usbip::kOperationSize + usbip::kBusIdSize, 0);
        const Bytes head{0x01, 0x11, 0x80, 0x03};
        std::copy(head.begin(), head.end(), bytes.begin());
        std::copy(busId.begin(), busId.end(),
                  bytes.begin() + static_cast<std::ptrdiff_t>(usbip::kOperationSize));
        return bytes;
    }

    /// The server's whole reply to a request for the list.
    Bytes list() const
    {
        const FileDescriptor socket = connect();
        write(socket, {0x01, 0x11, 0x80, 0x05, 0, 0, 0, 0});
        Bytes all;
        for (;;) {
            const Bytes part = read(socket, 1);
            if (part.empty())
                return all;
            all.push_back(part.front());
        }
    }

    UsbipServer m_server{m_bus, "127.0.0.1", 0};
};

} // namespace

TEST_F(Server, ListsTheCamerasOnTheBus)
{
    EXPECT_EQ(list(), (Bytes{0x01, 0x11, 0x00, 0x05, 0, 0, 0, 0, 0, 0, 0, 0}));
    request("plug one");
    request("plug two hid=0");
    const Bytes all = list();
    const std::size_t first = 12;
    const std::size_t second = first + usbip::kDeviceRecordSize + std::size_t{3} * 4;
    ASSERT_EQ(all.size(), second + usbip::kDeviceRecordSize + std::size_t{2} * 4);
    EXPECT_EQ(all[11], 2);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(&all[first + 256])), "1-1");
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(&all[second + 256])), "1-2");
    // Bus, device, speed, ids, version, class, configurations, interfaces.
    const Bytes numbers(all.begin() + static_cast<std::ptrdiff_t>(first + 288),
                        all.begin() + static_cast<std::ptrdiff_t>(first + 312));
    EXPECT_EQ(numbers, (Bytes{0,    0,    0,    1,    0,    0,    0,    2, 0, 0, 0, 3,
                              0xB2, 0x06, 0xB2, 0x15, 0x01, 0x05, 0xEF, 2, 1, 1, 1, 3}));
    const Bytes interfaces(all.begin() + static_cast<std::ptrdiff_t>(first + 312),
                           all.begin() + static_cast<std::ptrdiff_t>(second));
    EXPECT_EQ(interfaces, (Bytes{0x0E, 1, 0, 0, 0x0E, 2, 0, 0, 3, 0, 0, 0}));
    request("unplug one");
    EXPECT_EQ(list()[11], 1);
}

TEST_F(Server, ExportsACamera)
{
    request("plug cam serial=SVAA7");
    FileDescriptor socket = connect();
    write(socket, importRequest("1-1"));
    const Bytes reply = read(socket, usbip::kOperationSize + usbip::kDeviceRecordSize);
    ASSERT_EQ(reply.size(), usbip::kOperationSize + usbip::kDeviceRecordSize);
    EXPECT_EQ(Bytes(reply.begin(), reply.begin() + 8), (Bytes{0x01, 0x11, 0x00, 0x03, 0, 0, 0, 0}));
    UsbipClient host(std::move(socket));
    EXPECT_EQ(payloadOf(exchange(host, readRequest(command::kSerialNumber))).size(), 5U);
    EXPECT_EQ(list()[11], 0) << "it is taken";
    request("unplug cam");
    EXPECT_TRUE(host.readToTheEnd());
}

TEST_F(Server, RefusesUnknownAndImportedCameras)
{
    request("plug cam");
    const UsbipClient holder = import("cam");
    for (const std::string busId : {"1-1", "1-9", ""}) {
        const FileDescriptor socket = connect();
        write(socket, importRequest(busId));
        EXPECT_EQ(read(socket, 100), (Bytes{0x01, 0x11, 0x00, 0x03, 0, 0, 0, 1})) << busId;
    }
}

TEST_F(Server, ExportsACameraAgainOnceItsHostHasGone)
{
    request("plug cam");
    for (int i = 0; i < 3; ++i) {
        FileDescriptor socket = connect();
        write(socket, importRequest("1-1"));
        const Bytes reply = read(socket, usbip::kOperationSize + usbip::kDeviceRecordSize);
        ASSERT_EQ(reply.size(), usbip::kOperationSize + usbip::kDeviceRecordSize) << i;
        UsbipClient host(std::move(socket));
        EXPECT_EQ(host.controlIn(0x80, 6, 0x0100, 0, 18).data.size(), 18U);
    }
}

TEST_F(Server, InvalidConnectionsAreClosedAndTheNextHostIsServed)
{
    request("plug cam");
    {
        const FileDescriptor other = connect();
        write(other, {'G', 'E', 'T', ' ', '/', ' ', 'H', 'T'});
        EXPECT_TRUE(read(other, 1).empty());
        const FileDescriptor older = connect();
        write(older, {0x01, 0x06, 0x80, 0x05, 0, 0, 0, 0});
        EXPECT_TRUE(read(older, 1).empty());
        const FileDescriptor unknown = connect();
        write(unknown, {0x01, 0x11, 0x80, 0x77, 0, 0, 0, 0});
        EXPECT_TRUE(read(unknown, 1).empty());
    }
    EXPECT_EQ(list()[11], 1);
}

TEST_F(Server, RefusesAnInvalidAddress)
{
    EXPECT_THROW(UsbipServer(m_bus, "localhost", 0), std::invalid_argument);
    EXPECT_THROW(UsbipServer(m_bus, "127.0.0.1", m_server.port()), std::system_error);
}
