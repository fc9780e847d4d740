#include "core/Commands.h"
#include "core/ReportDescriptor.h"
#include "UsbDescriptors.h"
#include "UsbipTest.h"

#include <cerrno>

using namespace virtualcamera;

namespace {

constexpr std::uint8_t kStandardIn = 0x80;
constexpr std::uint8_t kInterfaceIn = 0x81;
constexpr std::uint8_t kClassIn = 0xA1;
constexpr std::uint8_t kClassOut = 0x21;
constexpr std::uint8_t kGetDescriptor = 6;
constexpr unsigned kHid = 2;
constexpr unsigned kUnit = 0x0200; // entity 2 of interface 0

const SettingInfo& mirror()
{
    return settingInfos()[static_cast<std::size_t>(Setting::HorizontalMirror)];
}

constexpr std::uint8_t kSetCurrent = 0x01;
constexpr std::uint8_t kGetCurrent = 0x81;
constexpr std::uint8_t kGetMinimum = 0x82;
constexpr std::uint8_t kGetMaximum = 0x83;
constexpr std::uint8_t kGetDefault = 0x87;

class Transfers : public UsbipTest
{
protected:
    UsbipClient plug(const std::string& options = {})
    {
        request("plug cam serial=SVAA7 " + options);
        return import("cam");
    }
};

} // namespace

TEST_F(Transfers, HostReadsTheDescriptors)
{
    UsbipClient host = plug();
    CameraSpec spec;
    spec.identity.usbSerial = "SVAA7";
    const UsbDescriptors expected(spec);
    EXPECT_EQ(host.controlIn(kStandardIn, kGetDescriptor, 0x0100, 0, 64).data, expected.device());
    // First the header, which has the total length, then the whole configuration.
    const Bytes head = host.controlIn(kStandardIn, kGetDescriptor, 0x0200, 0, 9).data;
    ASSERT_EQ(head.size(), 9U);
    EXPECT_EQ(
        host.controlIn(kStandardIn, kGetDescriptor, 0x0200, 0, loadLittleEndian16(&head[2])).data,
        expected.configuration());
    for (unsigned index = 0; index <= 3; ++index)
        EXPECT_EQ(host.controlIn(kStandardIn, kGetDescriptor, 0x0300 + index, 0x0409, 255).data,
                  expected.string(static_cast<std::uint8_t>(index)));
    EXPECT_EQ(host.controlIn(kInterfaceIn, kGetDescriptor, 0x2100, kHid, 9).data, expected.hid());
    EXPECT_EQ(host.controlIn(kInterfaceIn, kGetDescriptor, 0x2200, kHid, 255).data,
              reportDescriptor());
}

TEST_F(Transfers, UnknownRequestsStall)
{
    UsbipClient host = plug();
    EXPECT_EQ(host.controlIn(kStandardIn, kGetDescriptor, 0x0600, 0, 10).status, -EPIPE);
    EXPECT_EQ(host.controlIn(kStandardIn, kGetDescriptor, 0x0304, 0, 255).status, -EPIPE);
    EXPECT_EQ(host.controlIn(kInterfaceIn, kGetDescriptor, 0x2200, 0, 255).status, -EPIPE);
    EXPECT_EQ(host.controlIn(0xC0, 1, 0, 0, 1).status, -EPIPE);
    EXPECT_EQ(host.controlIn(kClassIn, kGetCurrent, 0x0200, 7, 2).status, -EPIPE);
    EXPECT_EQ(host.controlOut(0x01, 11, 2, 1).status, -EPIPE) << "no such alternate setting";
    EXPECT_EQ(host.controlOut(0x01, 11, 1, kHid).status, -EPIPE);
    EXPECT_EQ(host.wait(host.submitIn(9, 64)).status, -EPIPE);
    EXPECT_EQ(host.out(9, {1, 2, 3}).status, -EPIPE);
    // The device still answers later requests.
    EXPECT_EQ(host.controlIn(kStandardIn, kGetDescriptor, 0x0100, 0, 18).status, 0);
}

TEST_F(Transfers, RemembersItsConfiguration)
{
    UsbipClient host = plug();
    EXPECT_EQ(host.controlIn(kStandardIn, 8, 0, 0, 1).data, Bytes{0});
    EXPECT_EQ(host.controlOut(0x00, 9, 1, 0).status, 0);
    EXPECT_EQ(host.controlIn(kStandardIn, 8, 0, 0, 1).data, Bytes{1});
    EXPECT_EQ(host.controlOut(0x00, 9, 2, 0).status, -EPIPE);
    EXPECT_EQ(host.controlIn(kStandardIn, 0, 0, 0, 2).data, (Bytes{0, 0}));
    EXPECT_EQ(host.controlIn(kInterfaceIn, 10, 0, 1, 1).data, Bytes{0});
}

TEST_F(Transfers, HidReportsThroughTheInterruptEndpoints)
{
    UsbipClient host = plug();
    const Bytes answer = exchange(host, readRequest(command::kSerialNumber));
    ASSERT_EQ(answer.size(), kReportSize);
    EXPECT_EQ(answer[0], kReportId);
    EXPECT_EQ(payloadOf(answer), (Bytes{'S', 'V', 'A', 'A', '7'}));
    const auto writeMirror = static_cast<std::uint16_t>(mirror().readCommand + 1);
    EXPECT_EQ(statusOf(exchange(host, writeRequest(writeMirror, 1))), 0U);
    EXPECT_EQ(value("registers cam", std::string(mirror().name)), "1");
}

TEST_F(Transfers, AnswerIsSentWhenTheHostAsks)
{
    UsbipClient host = plug();
    EXPECT_EQ(host.out(endpoint::kHidOut, readRequest(command::kProbe)).status, 0);
    EXPECT_EQ(host.out(endpoint::kHidOut, readRequest(command::kSerialNumber)).status, 0);
    const Bytes first = host.wait(host.submitIn(endpoint::kHidIn, kReportSize)).data;
    const Bytes second = host.wait(host.submitIn(endpoint::kHidIn, kReportSize)).data;
    EXPECT_EQ(payloadOf(first), Bytes{0});
    EXPECT_EQ(payloadOf(second).size(), 5U);
}

TEST_F(Transfers, HidReportsThroughControlTransfers)
{
    UsbipClient host = plug();
    const std::uint32_t waiting = host.submitIn(endpoint::kHidIn, kReportSize);
    EXPECT_EQ(
        host.controlOut(kClassOut, 9, 0x0201, kHid, readRequest(command::kSerialNumber)).status, 0);
    const Bytes answer = host.wait(waiting).data;
    EXPECT_EQ(payloadOf(answer).size(), 5U);
    EXPECT_EQ(host.controlIn(kClassIn, 1, 0x0101, kHid, kReportSize).data, answer)
        << "the last report can be asked for again";
    EXPECT_EQ(host.controlIn(kClassIn, 1, 0x0102, kHid, kReportSize).status, -EPIPE);
    EXPECT_EQ(host.controlOut(kClassOut, 9, 0x0301, kHid, Bytes(8)).status, -EPIPE)
        << "it has no feature report";
}

TEST_F(Transfers, PictureControlsHaveTheDevicesRanges)
{
    UsbipClient host = plug("range-brightness=-64:64:1:0 range-sharpness=1:7:2:3");
    const auto number = [&host](std::uint8_t request, unsigned selector) {
        const Bytes data = host.controlIn(kClassIn, request, selector << 8U, kUnit, 2).data;
        return data.size() == 2 ? loadLittleEndian16(data.data()) : 0xFFFF;
    };
    EXPECT_EQ(number(kGetMinimum, 2), 0xFFC0); // -64
    EXPECT_EQ(number(kGetMaximum, 2), 64);
    EXPECT_EQ(number(kGetDefault, 8), 3);
    EXPECT_EQ(number(kGetCurrent, 8), 3);
    EXPECT_EQ(host.controlIn(kClassIn, 0x86, 0x0200, kUnit, 1).data, Bytes{3});
    EXPECT_EQ(host.controlIn(kClassIn, 0x85, 0x0200, kUnit, 2).data, (Bytes{2, 0}));

    EXPECT_EQ(host.controlOut(kClassOut, kSetCurrent, 0x0200, kUnit, {0xE2, 0xFF}).status, 0);
    EXPECT_EQ(value("registers cam", "brightness"), "-30");
    EXPECT_EQ(host.controlOut(kClassOut, kSetCurrent, 0x0800, kUnit, {6, 0}).status, 0);
    EXPECT_EQ(value("registers cam", "sharpness"), "5") << "values lie on its steps";
    EXPECT_EQ(number(kGetCurrent, 8), 5);
}

TEST_F(Transfers, RefusedPictureControlReportsTheReason)
{
    UsbipClient host = plug();
    const auto reason = [&host] {
        return host.controlIn(kClassIn, kGetCurrent, 0x0200, 0, 1).data;
    };
    EXPECT_EQ(host.controlOut(kClassOut, kSetCurrent, 0x0300, kUnit, {0, 1}).status, -EPIPE);
    EXPECT_EQ(reason(), Bytes{4});
    EXPECT_EQ(host.controlOut(kClassOut, kSetCurrent, 0x0600, kUnit, {0, 0}).status, -EPIPE);
    EXPECT_EQ(reason(), Bytes{6}) << "it has no hue";
    EXPECT_EQ(host.controlIn(kClassIn, kGetCurrent, 0x0200, 0x0500, 2).status, -EPIPE);
    EXPECT_EQ(reason(), Bytes{5});
    request("fault cam control-error");
    EXPECT_EQ(host.controlOut(kClassOut, kSetCurrent, 0x0300, kUnit, {1, 0}).status, -EPIPE);
    request("clear cam");
    EXPECT_EQ(host.controlOut(kClassOut, kSetCurrent, 0x0300, kUnit, {1, 0}).status, 0);
    EXPECT_EQ(reason(), Bytes{0});
}

TEST_F(Transfers, FaultsApplyToRequests)
{
    UsbipClient host = plug();
    request("fault cam writeerror times=1");
    EXPECT_EQ(host.out(endpoint::kHidOut, readRequest(command::kProbe)).status, -EPIPE);

    request("fault cam readerror times=1");
    const std::uint32_t failing = host.submitIn(endpoint::kHidIn, kReportSize);
    EXPECT_EQ(host.out(endpoint::kHidOut, readRequest(command::kProbe)).status, 0);
    EXPECT_EQ(host.wait(failing).status, -EPROTO);

    request("fault cam noreply times=1");
    const std::uint32_t waiting = host.submitIn(endpoint::kHidIn, kReportSize);
    EXPECT_EQ(host.out(endpoint::kHidOut, readRequest(command::kProbe)).status, 0);
    EXPECT_EQ(host.out(endpoint::kHidOut, readRequest(command::kSerialNumber)).status, 0);
    EXPECT_EQ(payloadOf(host.wait(waiting).data).size(), 5U) << "the answer is the second one's";

    request("fault cam short 20 times=1");
    EXPECT_EQ(exchange(host, readRequest(command::kProbe)).size(), 20U);
}

TEST_F(Transfers, LateAnswerFollowsTheNextOne)
{
    UsbipClient host = plug();
    request("fault cam late 300 times=1");
    EXPECT_EQ(host.out(endpoint::kHidOut, readRequest(command::kSerialNumber)).status, 0);
    EXPECT_EQ(payloadOf(exchange(host, readRequest(command::kProbe))).size(), 1U);
    const std::uint32_t late = host.submitIn(endpoint::kHidIn, kReportSize);
    EXPECT_EQ(payloadOf(host.wait(late).data).size(), 5U);
}

TEST_F(Transfers, UnlinkReturnsAPendingTransfer)
{
    UsbipClient host = plug();
    const std::uint32_t first = host.submitIn(endpoint::kHidIn, kReportSize);
    const std::uint32_t second = host.submitIn(endpoint::kHidIn, kReportSize);
    const UsbipClient::Answer answer = host.wait(host.submitUnlink(first));
    EXPECT_EQ(answer.code, usbip::kUnlinked);
    EXPECT_EQ(answer.status, -ECONNRESET);
    // The next report answers the remaining transfer.
    EXPECT_EQ(host.out(endpoint::kHidOut, readRequest(command::kProbe)).status, 0);
    EXPECT_EQ(host.wait(second).status, 0);
    EXPECT_FALSE(host.hasAnswer(first));
    // A transfer that was answered already cannot be unlinked.
    EXPECT_EQ(host.wait(host.submitUnlink(second)).status, 0);
}

TEST_F(Transfers, HostThatAsksForTooMuchIsDisconnected)
{
    UsbipClient greedy = plug();
    greedy.submitHeader(false, endpoint::kHidOut, 0x7FFFFFFF, usbip::kNotIsochronous);
    EXPECT_TRUE(greedy.readToTheEnd());
    request("wait cam onbus 1000");

    request("plug other");
    UsbipClient packets = import("other");
    packets.submitHeader(true, endpoint::kVideoIn, 3072, 0x10000000);
    EXPECT_TRUE(packets.readToTheEnd());
}
