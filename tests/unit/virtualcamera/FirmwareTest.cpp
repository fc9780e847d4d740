#include "Requests.h"

#include "core/DeviceFirmware.h"

#include <gtest/gtest.h>

namespace virtualcamera {

class FirmwareTest : public testing::Test
{
protected:
    static Bytes image(std::size_t payload, Bytes version = {2, 0, 1})
    {
        return DeviceFirmware{std::move(version), Bytes(payload, 0x3C)}.encode();
    }
    void add(std::vector<std::string> words) { device.faults().add(FaultRule::parse(words)); }
    std::uint32_t start()
    {
        return answerOf(send(device, makeRequest(command::kFirmwareStart, DataStatus::Control)));
    }
    Reaction end() { return send(device, makeRequest(command::kFirmwareEnd, DataStatus::Control)); }
    std::uint32_t packet(const Bytes& bytes, std::uint32_t number, bool last)
    {
        const DataStatus status = last ? DataStatus::Final : DataStatus::Payload;
        return answerOf(send(device, makeRequest(command::kFirmwarePacket, status, bytes, number)));
    }
    void transfer(const Bytes& bytes)
    {
        std::uint32_t number = 0;
        for (std::size_t at = 0; at < bytes.size(); at += kMaxPayload) {
            const std::size_t stop = std::min(at + kMaxPayload, bytes.size());
            const Bytes part(bytes.begin() + static_cast<Bytes::difference_type>(at),
                             bytes.begin() + static_cast<Bytes::difference_type>(stop));
            EXPECT_EQ(0U, packet(part, ++number, stop == bytes.size()));
        }
    }

    Device device{testConfig()};
};

TEST_F(FirmwareTest, ImageSurvivesEncoding)
{
    const auto decoded = DeviceFirmware::decode(image(100));
    ASSERT_TRUE(decoded);
    EXPECT_EQ((Bytes{2, 0, 1}), decoded->version);
    EXPECT_EQ(Bytes(100, 0x3C), decoded->payload);
    EXPECT_TRUE(DeviceFirmware::decode(image(0, {})));
}

TEST_F(FirmwareTest, DamagedImageIsRecognized)
{
    const Bytes good = image(100);
    for (std::size_t i = 0; i < good.size(); ++i) {
        Bytes bad = good;
        bad[i] ^= 0x40;
        EXPECT_FALSE(DeviceFirmware::decode(bad)) << i;
    }
    EXPECT_FALSE(DeviceFirmware::decode({}));
    EXPECT_FALSE(DeviceFirmware::decode(Bytes(good.begin(), good.begin() + 7)));
}

TEST_F(FirmwareTest, GoodTransferRunsAfterTheRestart)
{
    EXPECT_EQ(0U, start());
    const Bytes bytes = image(2500);
    transfer(bytes);
    EXPECT_EQ(bytes, device.firmware().image());
    EXPECT_EQ(3U, device.firmware().packetCount());
    const Reaction reaction = end();
    EXPECT_EQ(0U, answerOf(reaction));
    ASSERT_TRUE(reaction.drop);
    EXPECT_GT(reaction.drop->after.count(), 0);
    EXPECT_EQ(device.config().returnDelay, reaction.drop->returnsAfter);
    EXPECT_EQ("1.0.5", device.firmwareVersionText());
    device.powerCycle();
    EXPECT_EQ("2.0.1", device.firmwareVersionText());
}

TEST_F(FirmwareTest, SettingsAreKeptOverTheStartOfNewFirmware)
{
    EXPECT_EQ(0U, answerOf(send(device, writeOf(0x50A1, 60))));
    start();
    transfer(image(2500));
    EXPECT_TRUE(end().drop);
    device.powerCycle();
    EXPECT_EQ("2.0.1", device.firmwareVersionText());
    EXPECT_EQ(60, device.current()[Setting::CameraView]);
}

TEST_F(FirmwareTest, VolatileCameraLosesItsSettingsOverTheStartOfNewFirmware)
{
    device.config().volatileSettings = true;
    EXPECT_EQ(0U, answerOf(send(device, writeOf(0x50A1, 60))));
    start();
    transfer(image(2500));
    EXPECT_TRUE(end().drop);
    device.powerCycle();
    EXPECT_EQ("2.0.1", device.firmwareVersionText());
    EXPECT_EQ(120, device.current()[Setting::CameraView]);
}

TEST_F(FirmwareTest, ImageOfWholePacketsEndsWithAFullOne)
{
    start();
    const Bytes bytes = image(1010 * 2 - 10);
    ASSERT_EQ(0U, bytes.size() % kMaxPayload);
    transfer(bytes);
    EXPECT_TRUE(device.firmware().isComplete());
    EXPECT_EQ(2U, device.firmware().packetCount());
}

TEST_F(FirmwareTest, BadOrIncompleteImageLeavesTheOldVersion)
{
    start();
    Bytes bytes = image(500);
    bytes.back() ^= 1;
    transfer(bytes);
    EXPECT_TRUE(end().drop);
    device.powerCycle();
    EXPECT_EQ("1.0.5", device.firmwareVersionText());

    start();
    EXPECT_EQ(0U, packet(Bytes(kMaxPayload, 1), 1, false));
    EXPECT_EQ(0U, answerOf(end()));
    device.powerCycle();
    EXPECT_EQ("1.0.5", device.firmwareVersionText());

    start();
    EXPECT_EQ(0U, answerOf(end()));
    device.powerCycle();
    EXPECT_EQ("1.0.5", device.firmwareVersionText());
}

TEST_F(FirmwareTest, PacketsMustComeInOrder)
{
    EXPECT_EQ(1U, packet({1}, 1, true));
    EXPECT_EQ(Verdict::Violation, device.log().entries().back().verdict);
    start();
    EXPECT_EQ(1U, packet(Bytes(kMaxPayload, 1), 2, false));
    EXPECT_EQ(Verdict::BadPackNumber, device.log().entries().back().verdict);
    EXPECT_EQ(0U, packet(Bytes(kMaxPayload, 1), 1, false));
    EXPECT_EQ(0U, packet(Bytes(kMaxPayload, 1), 1, false)); // sent again
    EXPECT_EQ(kMaxPayload, device.firmware().image().size());
    EXPECT_EQ(0U, packet({2}, 2, true));
    EXPECT_EQ(1U, packet({3}, 3, true));
    EXPECT_EQ(kMaxPayload + 1, device.firmware().image().size());
}

TEST_F(FirmwareTest, OnlyTheLastPacketMayBeShort)
{
    start();
    EXPECT_EQ(1U, packet(Bytes(kMaxPayload - 1, 1), 1, false));
    EXPECT_EQ(Verdict::BadPayload, device.log().entries().back().verdict);
    EXPECT_EQ(1U, packet({}, 1, true));
    EXPECT_EQ(0U, packet({7}, 1, true));
}

TEST_F(FirmwareTest, EndNeedsAStart)
{
    const Reaction reaction = end();
    EXPECT_EQ(1U, answerOf(reaction));
    EXPECT_FALSE(reaction.drop);
    EXPECT_EQ(Verdict::Violation, device.log().entries().back().verdict);
}

TEST_F(FirmwareTest, SecondStartBeginsANewTransfer)
{
    start();
    packet(Bytes(kMaxPayload, 1), 1, false);
    EXPECT_EQ(0U, start());
    EXPECT_TRUE(device.firmware().image().empty());
    EXPECT_EQ(0U, packet({1}, 1, true));
}

TEST_F(FirmwareTest, RefusedStartsAndPackets)
{
    add({"refuse-start", "2"});
    EXPECT_EQ(1U, start());
    EXPECT_EQ(1U, start());
    EXPECT_FALSE(device.firmware().isReceiving());
    EXPECT_EQ(0U, start());
    add({"nack-packet", "1", "6"});
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(1U, packet({1}, 1, true));
    EXPECT_EQ(0U, packet({1}, 1, true));
}

TEST_F(FirmwareTest, FaultsOfTheRestart)
{
    add({"old-version"});
    add({"never-return"});
    start();
    transfer(image(10));
    const Reaction reaction = end();
    ASSERT_TRUE(reaction.drop);
    EXPECT_FALSE(reaction.drop->returnsAfter);
    device.powerCycle();
    EXPECT_EQ("1.0.5", device.firmwareVersionText());
}

} // namespace virtualcamera
