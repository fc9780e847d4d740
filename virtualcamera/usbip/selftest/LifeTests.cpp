#include "core/Commands.h"
#include "core/DeviceFirmware.h"
#include "StreamModes.h"
#include "UsbipTest.h"
#include "VhciPort.h"

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <future>
#include <system_error>

using namespace virtualcamera;

namespace {

Bytes firmwareRequest(std::uint16_t command, DataStatus status, std::uint32_t number,
                      const Bytes& payload)
{
    Request request;
    request.command = command;
    request.dataStatus = static_cast<std::uint8_t>(status);
    request.dataLength = static_cast<std::uint16_t>(payload.size());
    request.packNumber = number;
    request.payload = payload;
    return buildRequest(request);
}

/// A temporary folder for the duration of a test.
class TemporaryFolder
{
public:
    TemporaryFolder()
        : m_path("/tmp/virtualcamera-usbip-test-XXXXXX")
    {
        if (!::mkdtemp(m_path.data()))
            throw std::system_error(errno, std::generic_category());
    }
    ~TemporaryFolder()
    {
        ::unlink((m_path + "/attach").c_str());
        ::rmdir(m_path.c_str());
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& path() const { return m_path; }

private:
    std::string m_path;
};

class Life : public UsbipTest
{
};

} // namespace

TEST_F(Life, UnplugEndsTheConnectionAndPlugOffersTheCameraAgain)
{
    request("plug cam serial=SVAA7");
    UsbipClient host = import("cam");
    EXPECT_EQ(value("nodes cam", "imported"), "1");
    EXPECT_EQ(statusOf(exchange(host, writeRequest(0x5091, 1))), 0U);
    request("unplug cam");
    EXPECT_TRUE(host.readToTheEnd());
    EXPECT_EQ(m_commands.execute("nodes cam"), "ok");
    EXPECT_THROW(import("cam"), std::runtime_error);
    request("plug cam");
    UsbipClient again = import("cam");
    EXPECT_EQ(payloadOf(exchange(again, readRequest(command::kSerialNumber))).size(), 5U);
    EXPECT_EQ(payloadOf(exchange(again, readRequest(0x5090))), Bytes{1}) << "it keeps its settings";
}

TEST_F(Life, VolatileCameraLosesItsSettingsWithThePower)
{
    request("plug cam volatile=1");
    UsbipClient host = import("cam");
    EXPECT_EQ(statusOf(exchange(host, writeRequest(0x5091, 1))), 0U);
    request("unplug cam");
    request("plug cam");
    UsbipClient again = import("cam");
    EXPECT_EQ(payloadOf(exchange(again, readRequest(0x5090))), Bytes{0});
}

TEST_F(Life, IsQuietBeforeItLeaves)
{
    request("plug cam");
    UsbipClient host = import("cam");
    const std::uint32_t waiting = host.submitIn(endpoint::kHidIn, kReportSize);
    EXPECT_EQ(host.controlIn(0x80, 0, 0, 0, 2).status, 0); // the transfer has been queued

    const auto begin = std::chrono::steady_clock::now();
    std::future<std::string> unplugged =
        std::async(std::launch::async, [this] { return m_commands.execute("unplug cam"); });
    // The device handles the request but must not complete a transfer with the answer.
    std::uint64_t requests = 0;
    try {
        while (unplugged.wait_for(std::chrono::milliseconds(5)) != std::future_status::ready) {
            if (requests++ > 10)
                host.out(endpoint::kHidOut, readRequest(command::kProbe));
        }
    } catch (const std::runtime_error&) {
        // The camera has left the bus.
    }
    EXPECT_EQ(unplugged.get(), "ok");
    EXPECT_GE(std::chrono::steady_clock::now() - begin, UsbipBus::kQuietTime);
    EXPECT_GT(requests, 0U);
    EXPECT_TRUE(host.readToTheEnd());
    EXPECT_FALSE(host.hasAnswer(waiting));
}

TEST_F(Life, LeavesInTheMiddleOfAStream)
{
    request("plug cam");
    UsbipClient host = import("cam");
    EXPECT_EQ(host.controlOut(0x01, 11, 1, 1).status, 0);
    // Fewer transfers than a frame needs: the camera waits in the middle of the frame.
    const std::uint32_t first =
        host.submitIsochronous(endpoint::kVideoIn, 32, StreamModes::kPacketSize);
    EXPECT_EQ(host.wait(first).status, 0);
    request("unplug cam");
    EXPECT_TRUE(host.readToTheEnd());
    EXPECT_EQ(value("registers cam", "streamon"), "0");
}

TEST_F(Life, CameraIsFreeWhenItsHostDisconnects)
{
    request("plug cam");
    {
        UsbipClient host = import("cam");
        EXPECT_EQ(host.controlOut(0x01, 11, 1, 1).status, 0);
        EXPECT_EQ(value("registers cam", "streamon"), "1");
        EXPECT_THROW(import("cam"), std::runtime_error) << "one host at a time";
    }
    request("wait cam idle 10000");
    UsbipClient next = import("cam");
    EXPECT_EQ(next.controlIn(0x80, 6, 0x0100, 0, 18).data.size(), 18U);
}

TEST_F(Life, SeveralCamerasAreSeveralDevices)
{
    request("plug one serial=SVAA1");
    request("plug two serial=SVAA2");
    UsbipClient first = import("one");
    UsbipClient second = import("two");
    EXPECT_EQ(payloadOf(exchange(first, readRequest(command::kSerialNumber))).back(), '1');
    EXPECT_EQ(payloadOf(exchange(second, readRequest(command::kSerialNumber))).back(), '2');
    EXPECT_NE(value("nodes one", "usb"), value("nodes two", "usb"));
    request("unplug one");
    EXPECT_EQ(payloadOf(exchange(second, readRequest(command::kSerialNumber))).back(), '2');
}

TEST_F(Life, ComesBackFromAFirmwareUpdateWithTheNewVersion)
{
    request("plug cam firmware=1.0.5 dropdelay=10 returndelay=50");
    UsbipClient host = import("cam");
    EXPECT_EQ(statusOf(exchange(host, writeRequest(0x50A1, 60))), 0U);
    const Bytes image = DeviceFirmware{{2, 0, 1}, Bytes(3000, 0x42)}.encode();
    exchange(host, firmwareRequest(command::kFirmwareStart, DataStatus::Control, 0, {}));
    std::uint32_t number = 0;
    for (std::size_t at = 0; at < image.size(); at += kMaxPayload) {
        const std::size_t end = std::min(at + kMaxPayload, image.size());
        const Bytes part(image.begin() + static_cast<std::ptrdiff_t>(at),
                         image.begin() + static_cast<std::ptrdiff_t>(end));
        const DataStatus status = end == image.size() ? DataStatus::Final : DataStatus::Payload;
        const Bytes answer =
            exchange(host, firmwareRequest(command::kFirmwarePacket, status, ++number, part));
        EXPECT_EQ(statusOf(answer), 0U);
    }
    exchange(host, firmwareRequest(command::kFirmwareEnd, DataStatus::Control, 0, {}));
    EXPECT_TRUE(host.readToTheEnd());
    request("wait cam connections>=2 10000");
    request("wait cam onbus 10000");
    EXPECT_EQ(value("firmware cam", "version"), "2.0.1");
    UsbipClient again = import("cam");
    EXPECT_EQ(payloadOf(exchange(again, readRequest(command::kFirmwareVersion))), (Bytes{2, 0, 1}));
    EXPECT_EQ(payloadOf(exchange(again, readRequest(0x50A0))), Bytes{60})
        << "it keeps its settings";
}

TEST_F(Life, UnplugAtARequest)
{
    request("plug cam");
    UsbipClient host = import("cam");
    request("fault cam unplug-at 1 times=1");
    EXPECT_EQ(host.out(endpoint::kHidOut, readRequest(command::kProbe)).status, 0);
    EXPECT_TRUE(host.readToTheEnd());
    request("wait cam offbus 10000");
}

TEST(LifeInKernel, WritesPortSocketDeviceAndSpeedToTheHostController)
{
    const TemporaryFolder folder;
    std::ofstream(folder.path() + "/attach").put('\n');
    UsbipBus bus{VhciPort(folder.path())};
    bus.plug("first", [](CameraSpec&) {});
    bus.plug("second", [](CameraSpec&) {});
    std::ifstream file(folder.path() + "/attach");
    unsigned port = 9;
    int socket = -1;
    unsigned device = 0;
    unsigned speed = 0;
    file >> port >> socket >> device >> speed;
    EXPECT_EQ(port, 1U);
    EXPECT_GT(socket, 2);
    EXPECT_EQ(device, 0x00010003U);
    EXPECT_EQ(speed, 3U);
}

TEST(LifeInKernel, PlugFailsWithoutAHostController)
{
    UsbipBus bus{VhciPort("/nowhere")};
    EXPECT_THROW(bus.plug("cam", [](CameraSpec&) {}), std::system_error);
    const std::lock_guard<std::mutex> lock(bus.context().mutex);
    EXPECT_FALSE(bus.camera("cam").onBus);
}
