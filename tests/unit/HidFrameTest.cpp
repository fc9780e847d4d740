#include "HidFrame.h"
#include "FrameReference.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace {

QByteArray bytesOf(const HidFrame::Buffer& frame)
{
    return {reinterpret_cast<const char*>(frame.data()), static_cast<int>(frame.size())};
}

std::uint16_t crcOf(const HidFrame::Buffer& frame)
{
    return static_cast<std::uint16_t>(frame[12] | (frame[13] << 8));
}

std::uint16_t checksumOf(const QByteArray& bytes)
{
    return HidFrame::checksum(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                              static_cast<std::size_t>(bytes.size()));
}

QByteArray randomBytes(std::mt19937& generator, int size)
{
    std::uniform_int_distribution<int> byte(0, 255);
    QByteArray result(size, '\0');
    for (char& c : result)
        c = static_cast<char>(byte(generator));
    return result;
}

HidFrame::Buffer answerClaiming(std::uint16_t dataLen)
{
    HidFrame::Buffer frame{};
    for (std::size_t i = HidFrame::kHeaderSize; i < frame.size(); ++i)
        frame[i] = static_cast<std::uint8_t>(i * 7 + 1);
    frame[6] = static_cast<std::uint8_t>(dataLen & 0xFFU);
    frame[7] = static_cast<std::uint8_t>(dataLen >> 8U);
    return frame;
}

} // namespace

TEST(HidFrameChecksum, ReadOfFirmwareVersionHasTheKnownValue)
{
    const auto frame = HidFrame::packRequest(0x5001, HidFrame::ReadOrFinal, {}, 0);
    EXPECT_EQ(crcOf(frame), 0x04A3);
}

TEST(HidFrameChecksum, ConnectionProbeHasTheKnownValue)
{
    const auto frame = HidFrame::packRequest(0x5000, HidFrame::ReadOrFinal, {}, 0);
    EXPECT_EQ(crcOf(frame), 0x05E7);
}

TEST(HidFrameChecksum, WriteOfMirrorOnHasTheKnownValue)
{
    const auto frame =
        HidFrame::packRequest(0x5091, HidFrame::PayloadFollows, QByteArray(1, '\x01'), 1);
    EXPECT_EQ(crcOf(frame), 0x03BA);
}

TEST(HidFrameChecksum, FirmwareStartHasTheKnownValue)
{
    const auto frame = HidFrame::packRequest(0x4000, HidFrame::Control, {}, 0);
    EXPECT_EQ(crcOf(frame), 0x0A39);
}

TEST(HidFrameChecksum, OfNothingIsTheSeed)
{
    EXPECT_EQ(HidFrame::checksum(nullptr, 0), 0xFFFF);
    EXPECT_EQ(HidFrame::checksum(nullptr, 0, 0x1234), 0x1234);
}

TEST(HidFrameChecksum, OfEverySingleByteEqualsTheBitByBitRule)
{
    for (int value = 0; value < 256; ++value) {
        const QByteArray bytes(1, static_cast<char>(value));
        EXPECT_EQ(checksumOf(bytes), FrameReference::checksum(bytes)) << value;
    }
}

TEST(HidFrameChecksum, OfRandomBlocksEqualsTheBitByBitRule)
{
    std::mt19937 generator(20240131);
    std::uniform_int_distribution<int> length(0, 1100);
    for (int round = 0; round < 300; ++round) {
        const QByteArray bytes = randomBytes(generator, length(generator));
        ASSERT_EQ(checksumOf(bytes), FrameReference::checksum(bytes)) << bytes.toHex().constData();
    }
}

TEST(HidFrameChecksum, ContinuesOverSeveralBlocks)
{
    std::mt19937 generator(5);
    const QByteArray bytes = randomBytes(generator, 200);
    const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.constData());
    for (std::size_t cut = 0; cut <= 200; ++cut) {
        const std::uint16_t first = HidFrame::checksum(data, cut);
        EXPECT_EQ(HidFrame::checksum(data + cut, 200 - cut, first), checksumOf(bytes)) << cut;
    }
}

TEST(HidFrameHeader, EveryFieldStandsLittleEndianAtItsOffset)
{
    HidFrame::Buffer frame;
    frame.fill(0xEE);
    HidFrame::packHeader(frame, 0xB1A2, 0xC3, 0xD5E4, 0x12345678);

    const std::array<std::uint8_t, 12> expected{0x01, 0x5A, 0x5A, 0xA2, 0xB1, 0xC3,
                                                0xE4, 0xD5, 0x78, 0x56, 0x34, 0x12};
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), frame.begin()));
}

TEST(HidFrameHeader, PackingWritesTheTwelveHeaderBytesAlone)
{
    HidFrame::Buffer frame;
    frame.fill(0xEE);
    HidFrame::packHeader(frame, 1, 2, 3, 4);
    EXPECT_TRUE(std::all_of(frame.begin() + 12, frame.end(), [](int b) { return b == 0xEE; }));
}

TEST(HidFrameHeader, SealingTouchesTheChecksumAlone)
{
    HidFrame::Buffer frame;
    frame.fill(0x6B);
    HidFrame::sealFrame(frame, 10);
    for (std::size_t i = 0; i < frame.size(); ++i) {
        if (i != 12 && i != 13) {
            EXPECT_EQ(frame[i], 0x6B) << i;
        }
    }
}

TEST(HidFrameHeader, SealCoversExactlyThePayloadSize)
{
    HidFrame::Buffer frame;
    for (std::size_t i = 0; i < frame.size(); ++i)
        frame[i] = static_cast<std::uint8_t>(i * 3);
    const QByteArray bytes = bytesOf(frame);
    for (const int payload : {0, 1, 2, 13, 500, 1009, 1010}) {
        HidFrame::sealFrame(frame, static_cast<std::size_t>(payload));
        EXPECT_EQ(crcOf(frame), FrameReference::checksum(bytes.left(12) + bytes.mid(14, payload)))
            << payload;
    }
}

TEST(HidFrameRequest, WithoutPayloadIsHeaderAndZeros)
{
    const auto frame = HidFrame::packRequest(0x5001, HidFrame::ReadOrFinal, {}, 0);
    QByteArray expected = QByteArray::fromHex("015a5a0150020000000000 00a304");
    expected.append(QByteArray(1010, '\0'));
    EXPECT_EQ(bytesOf(frame), expected);
}

TEST(HidFrameRequest, PayloadFollowsTheHeaderAndTheRestIsZero)
{
    const QByteArray payload = QByteArray::fromHex("80ff0001");
    const auto frame = HidFrame::packRequest(0x4200, HidFrame::PayloadFollows, payload, 4, 7);
    EXPECT_EQ(bytesOf(frame), FrameReference::request(0x4200, 1, payload, 4, 7));
    EXPECT_EQ(bytesOf(frame).mid(14, 4), payload);
    EXPECT_EQ(bytesOf(frame).mid(18), QByteArray(1006, '\0'));
}

TEST(HidFrameRequest, LargestPayloadFillsTheFrame)
{
    std::mt19937 generator(9);
    const QByteArray payload = randomBytes(generator, 1010);
    const auto frame =
        HidFrame::packRequest(0x4200, HidFrame::PayloadFollows, payload, 1010, 65537);
    EXPECT_EQ(bytesOf(frame), FrameReference::request(0x4200, 1, payload, 1010, 65537));
    EXPECT_EQ(bytesOf(frame).mid(14), payload);
}

TEST(HidFrameRequest, ClaimedLengthMayDifferFromTheCheckedPayload)
{
    const QByteArray payload = QByteArray::fromHex("c3a9");
    const auto frame = HidFrame::packRequest(0x5100, HidFrame::PayloadFollows, payload, 1);
    EXPECT_EQ(bytesOf(frame), FrameReference::request(0x5100, 1, payload, 1));
    EXPECT_EQ(frame[6], 1);
}

TEST(HidFrameResponse, EveryFieldIsReadFromItsOffset)
{
    HidFrame::Buffer frame{};
    const std::array<std::uint8_t, 14> header{0x07, 0x34, 0x12, 0x78, 0x56, 0x9A, 0xDE,
                                              0xBC, 0x44, 0x33, 0x22, 0x91, 0x66, 0x85};
    std::copy(header.begin(), header.end(), frame.begin());

    const HidFrame::Response response = HidFrame::parseResponse(frame);
    EXPECT_EQ(response.reportId, 0x07);
    EXPECT_EQ(response.magic, 0x1234);
    EXPECT_EQ(response.cmd, 0x5678);
    EXPECT_EQ(response.dataStatus, 0x9A);
    EXPECT_EQ(response.dataLen, 0xBCDE);
    EXPECT_EQ(response.status, 0x91223344U);
    EXPECT_EQ(response.crc, 0x8566);
}

TEST(HidFrameResponse, AnswersWhenStatusIsGoodAndTheCommandIsEchoed)
{
    HidFrame::Response response;
    response.cmd = 0x5090;
    EXPECT_TRUE(response.answers(0x5090));
    EXPECT_FALSE(response.answers(0x5091));
    for (const std::uint32_t status : {1U, 0x100U, 0x10000U, 0x1000000U, 0xFFFFFFFFU}) {
        response.status = status;
        EXPECT_FALSE(response.answers(0x5090)) << status;
    }
}

TEST(HidFramePayload, HasTheClaimedLength)
{
    for (const int length : {0, 1, 2, 255, 256, 1009, 1010}) {
        const HidFrame::Buffer frame = answerClaiming(static_cast<std::uint16_t>(length));
        EXPECT_EQ(HidFrame::payloadOf(frame), bytesOf(frame).mid(14, length)) << length;
    }
}

TEST(HidFramePayload, IsCutToTheFrameWhenTheDeviceClaimsMore)
{
    for (const int length : {1011, 1024, 32768, 65535}) {
        const HidFrame::Buffer frame = answerClaiming(static_cast<std::uint16_t>(length));
        EXPECT_EQ(HidFrame::payloadOf(frame), bytesOf(frame).mid(14)) << length;
    }
}

TEST(HidFramePayload, NumbersAreLittleEndianAndSigned)
{
    HidFrame::Buffer frame{};
    frame[14] = 0x78;
    frame[15] = 0x56;
    frame[16] = 0x34;
    frame[17] = 0x12;
    frame[46] = 0xFE;
    frame[47] = frame[48] = frame[49] = 0xFF;
    EXPECT_EQ(HidFrame::payloadInt32(frame, 0), 0x12345678);
    EXPECT_EQ(HidFrame::payloadInt32(frame, 1), 0x00123456);
    EXPECT_EQ(HidFrame::payloadInt32(frame, 32), -2);
}

TEST(HidFramePayload, LastNumberOfTheFrameCanBeRead)
{
    HidFrame::Buffer frame{};
    frame[1023] = 0x80;
    EXPECT_EQ(HidFrame::payloadInt32(frame, 1006), std::numeric_limits<std::int32_t>::min());
}
