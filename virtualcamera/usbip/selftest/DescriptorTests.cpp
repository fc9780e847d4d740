#include "core/ReportDescriptor.h"
#include "DescriptorWalk.h"
#include "UsbDescriptors.h"

#include <gtest/gtest.h>

#include <set>
#include <tuple>

using namespace virtualcamera;

namespace {

CameraSpec specWithSerial(const std::string& serial)
{
    CameraSpec spec;
    spec.identity.usbSerial = serial;
    return spec;
}

std::vector<Bytes> configurationOf(const CameraSpec& spec)
{
    return splitDescriptors(UsbDescriptors(spec).configuration());
}

/// Lengths, totals and counts that hold for every camera.
void expectConsistent(const CameraSpec& spec)
{
    const Bytes configuration = UsbDescriptors(spec).configuration();
    const std::vector<Bytes> all = splitDescriptors(configuration);
    EXPECT_EQ(totalLength(all), configuration.size());
    ASSERT_FALSE(all.empty());
    EXPECT_EQ(loadLittleEndian16(&configuration[2]), configuration.size());

    std::set<unsigned> interfaces;
    std::set<unsigned> endpoints;
    unsigned expected = 0;
    for (const Bytes& each : all) {
        if (each[1] == 4) {
            EXPECT_EQ(expected, 0U) << "an interface has fewer endpoints than it says";
            ASSERT_EQ(each.size(), 9U);
            interfaces.insert(each[2]);
            expected = each[4];
        } else if (each[1] == 5) {
            ASSERT_EQ(each.size(), 7U);
            ASSERT_GT(expected, 0U) << "an interface has more endpoints than it says";
            --expected;
            EXPECT_TRUE(endpoints.insert(each[2]).second) << "an endpoint twice";
        }
    }
    EXPECT_EQ(expected, 0U);
    EXPECT_EQ(configuration[4], interfaces.size());
    unsigned next = 0;
    for (const unsigned number : interfaces)
        EXPECT_EQ(number, next++);
    EXPECT_EQ(UsbDescriptors(spec).interfaces().size(), interfaces.size());
}

} // namespace

TEST(Descriptors, DeviceIsACompositeHighSpeedDevice)
{
    const Bytes expected{18,   1,    0x00, 0x02, 0xEF, 2, 1, 64, 0x06,
                         0xB2, 0x15, 0xB2, 0x05, 0x01, 1, 2, 3,  1};
    EXPECT_EQ(UsbDescriptors(specWithSerial("SVAA1")).device(), expected);
}

TEST(Descriptors, DeviceWithoutSerialNumberHasNoStringForIt)
{
    const UsbDescriptors descriptors(specWithSerial(""));
    EXPECT_EQ(descriptors.device()[16], 0);
    EXPECT_FALSE(descriptors.string(3));
}

TEST(Descriptors, StringsAreUtf16)
{
    CameraSpec spec = specWithSerial("S1");
    spec.identity.product = "Nové";
    const UsbDescriptors descriptors(spec);
    EXPECT_EQ(descriptors.string(0), (Bytes{4, 3, 0x09, 0x04}));
    EXPECT_EQ(descriptors.string(2), (Bytes{10, 3, 'N', 0, 'o', 0, 'v', 0, 0xE9, 0}));
    EXPECT_EQ(descriptors.string(3), (Bytes{6, 3, 'S', 0, '1', 0}));
    EXPECT_FALSE(descriptors.string(4));
}

TEST(Descriptors, LengthsAndCountsAreConsistentForEveryKindOfCamera)
{
    for (const bool video : {true, false}) {
        for (const bool hid : {true, false}) {
            for (const bool amplifier : {true, false}) {
                CameraSpec spec;
                spec.hasVideo = video;
                spec.hasHid = hid;
                spec.hasAmplifier = amplifier;
                SCOPED_TRACE(testing::Message() << video << hid << amplifier);
                expectConsistent(spec);
            }
        }
    }
    CameraSpec single;
    single.modes = parsePixelFormats("MJPG:1280x720");
    expectConsistent(single);
}

TEST(Descriptors, AssociationCoversTheTwoVideoInterfaces)
{
    const std::vector<Bytes> all = configurationOf({});
    EXPECT_EQ(all[0], (Bytes{9, 2, all[0][2], all[0][3], 3, 1, 0, 0x80, 250}));
    EXPECT_EQ(all[1], (Bytes{8, 11, 0, 2, 0x0E, 3, 0, 0}));
    EXPECT_EQ(all[2], (Bytes{9, 4, 0, 0, 0, 0x0E, 1, 0, 0}));
}

TEST(Descriptors, VideoControlHeaderCountsItsEntities)
{
    const std::vector<Bytes> control = descriptorsOf(configurationOf({}), 0);
    ASSERT_EQ(control.size(), 5U);
    const Bytes& header = control[1];
    ASSERT_EQ(header.size(), 13U);
    EXPECT_EQ(loadLittleEndian16(&header[3]), 0x0110);
    EXPECT_EQ(loadLittleEndian16(&header[5]), totalLength(control) - control[0].size());
    EXPECT_EQ(header[11], 1);
    EXPECT_EQ(header[12], 1);
    // Terminal 1 -> unit 2 -> terminal 3.
    EXPECT_EQ(control[2][3], 1);
    EXPECT_EQ(loadLittleEndian16(&control[2][4]), 0x0201);
    EXPECT_EQ(control[3], (Bytes{12, 0x24, 5, 2, 1, 0, 0, 2, 0x1B, 0x00, 0, 0}));
    EXPECT_EQ(control[4], (Bytes{9, 0x24, 3, 3, 0x01, 0x01, 0, 2, 0}));
}

TEST(Descriptors, WithoutAnAmplifierThereIsNoProcessingUnit)
{
    CameraSpec spec;
    spec.hasAmplifier = false;
    const std::vector<Bytes> control = descriptorsOf(configurationOf(spec), 0);
    EXPECT_TRUE(withSubtype(control, 5).empty());
    EXPECT_EQ(control.back()[7], 1) << "the output shows the camera terminal";
}

TEST(Descriptors, StreamingHeaderCountsItsFormats)
{
    const std::vector<Bytes> streaming = descriptorsOf(configurationOf({}), 1);
    const Bytes& header = streaming[1];
    ASSERT_EQ(header.size(), 15U);
    EXPECT_EQ(header[3], 2);
    EXPECT_EQ(loadLittleEndian16(&header[4]), totalLength(streaming) - streaming[0].size());
    EXPECT_EQ(header[6], 0x81);
    EXPECT_EQ(header[8], 3);
    EXPECT_EQ(header[12], 1);
    EXPECT_EQ(withSubtype(streaming, 13).size(), 2U) << "one colour description a format";
}

TEST(Descriptors, OffersTheModesOfTheCamera)
{
    const std::vector<Bytes> streaming = descriptorsOf(configurationOf({}), 1);
    using Mode = std::tuple<unsigned, unsigned, unsigned>; // subtype, width, height
    std::vector<Mode> modes;
    for (const Bytes& each : streaming)
        if (each[1] == 0x24 && (each[2] == 5 || each[2] == 7))
            modes.emplace_back(each[2], loadLittleEndian16(&each[5]), loadLittleEndian16(&each[7]));
    EXPECT_EQ(modes, (std::vector<Mode>{{5, 1920, 1080},
                                        {5, 1280, 720},
                                        {5, 640, 360},
                                        {7, 3840, 2160},
                                        {7, 1920, 1080},
                                        {7, 1280, 720},
                                        {7, 640, 360}}));
    const std::vector<Bytes> yuyv = withSubtype(streaming, 4);
    ASSERT_EQ(yuyv.size(), 1U);
    EXPECT_EQ(yuyv[0][4], 3) << "three frame descriptors follow";
    EXPECT_EQ(Bytes(yuyv[0].begin() + 5, yuyv[0].begin() + 21),
              (Bytes{'Y', 'U', 'Y', '2', 0, 0, 0x10, 0, 0x80, 0, 0, 0xAA, 0, 0x38, 0x9B, 0x71}));
    EXPECT_EQ(withSubtype(streaming, 6).at(0)[4], 4);
}

TEST(Descriptors, FramesHaveSizeAndIntervals)
{
    const std::vector<Bytes> streaming = descriptorsOf(configurationOf({}), 1);
    for (const std::uint8_t subtype : {std::uint8_t{5}, std::uint8_t{7}}) {
        unsigned index = 0;
        for (const Bytes& frame : withSubtype(streaming, subtype)) {
            EXPECT_EQ(frame[3], ++index);
            const unsigned width = loadLittleEndian16(&frame[5]);
            const unsigned height = loadLittleEndian16(&frame[7]);
            EXPECT_EQ(loadLittleEndian32(&frame[17]), width * height * 2);
            ASSERT_EQ(frame.size(), 26U + 4U * frame[25]);
            EXPECT_EQ(loadLittleEndian32(&frame[21]), loadLittleEndian32(&frame[26]));
            EXPECT_LE(loadLittleEndian32(&frame[9]), loadLittleEndian32(&frame[13]));
        }
    }
    const std::vector<Bytes> raw = withSubtype(streaming, 5);
    EXPECT_EQ(loadLittleEndian32(&raw[0][21]), 2000000U) << "1080p fills the bus at 5 a second";
    EXPECT_EQ(loadLittleEndian32(&raw[2][21]), 333333U);
}

TEST(Descriptors, VideoEndpointHasThreeTransactionsPerMicroframe)
{
    const std::vector<Bytes> running = descriptorsOf(configurationOf({}), 1, 1);
    ASSERT_EQ(running.size(), 2U);
    EXPECT_EQ(running[0][4], 1);
    EXPECT_EQ(running[1], (Bytes{7, 5, 0x81, 5, 0x00, 0x14, 1}));
}

TEST(Descriptors, HidInterfaceHasTwoEndpointsOfOneReport)
{
    const std::vector<Bytes> hid = descriptorsOf(configurationOf({}), 2);
    ASSERT_EQ(hid.size(), 4U);
    EXPECT_EQ(hid[0], (Bytes{9, 4, 2, 0, 2, 3, 0, 0, 0}));
    const auto size = static_cast<std::uint8_t>(reportDescriptor().size());
    EXPECT_EQ(hid[1], (Bytes{9, 0x21, 0x11, 0x01, 0, 1, 0x22, size, 0}));
    EXPECT_EQ(hid[2], (Bytes{7, 5, 0x82, 3, 0x00, 0x04, 4}));
    EXPECT_EQ(hid[3], (Bytes{7, 5, 0x03, 3, 0x00, 0x04, 4}));
    EXPECT_EQ(UsbDescriptors(CameraSpec()).hid(), hid[1]);
}

TEST(Descriptors, WithoutVideoTheHidInterfaceIsTheFirst)
{
    CameraSpec spec;
    spec.hasVideo = false;
    const UsbDescriptors descriptors(spec);
    EXPECT_EQ(descriptors.hidInterface(), 0);
    EXPECT_FALSE(descriptors.videoControl());
    EXPECT_FALSE(descriptors.videoStreaming());
}
