#include "DescriptorWalk.h"
#include "StreamModes.h"
#include "UsbipTest.h"

#include <cerrno>
#include <deque>

using namespace virtualcamera;

namespace {

constexpr unsigned kStreaming = 1; // the interface
constexpr unsigned kPackets = 32;

constexpr std::uint8_t kHeaderEnd = 0x80;
constexpr std::uint8_t kFrameEnd = 0x02;
constexpr std::uint8_t kOddFrame = 0x01;

struct Frame
{
    Bytes data;
    bool odd = false;
};

class Video : public UsbipTest
{
protected:
    Video()
    {
        request("plug cam");
        m_host.emplace(import("cam"));
    }

    /// Probe, read back, commit, start: as a driver does.
    Bytes negotiate(std::uint8_t format, std::uint8_t frame, std::uint32_t interval)
    {
        Bytes wish(StreamModes::kBlockSize, 0);
        wish[2] = format;
        wish[3] = frame;
        storeLittleEndian32(&wish[4], interval);
        EXPECT_EQ(m_host->controlOut(0x21, 0x01, 0x0100, kStreaming, wish).status, 0);
        Bytes agreed =
            m_host->controlIn(0xA1, 0x81, 0x0100, kStreaming, StreamModes::kBlockSize).data;
        EXPECT_EQ(agreed.size(), StreamModes::kBlockSize);
        EXPECT_EQ(m_host->controlOut(0x21, 0x01, 0x0200, kStreaming, agreed).status, 0);
        return agreed;
    }

    void start()
    {
        EXPECT_EQ(m_host->controlOut(0x01, 11, 1, kStreaming).status, 0);
        for (int i = 0; i < 5; ++i)
            m_waiting.push_back(submit());
    }

    /// Collects packets up to the end of a frame.
    Frame receive()
    {
        Frame frame;
        bool first = true;
        for (;;) {
            const UsbipClient::Answer answer = m_host->wait(m_waiting.front());
            m_waiting.pop_front();
            m_waiting.push_back(submit());
            EXPECT_EQ(answer.status, 0);
            EXPECT_EQ(answer.packets.size(), kPackets);
            std::size_t at = 0; // an answer has no padding between its packets
            bool isLast = false;
            for (const usbip::IsoPacket& packet : answer.packets) {
                EXPECT_EQ(packet.status, 0U);
                if (packet.actual == 0)
                    continue;
                EXPECT_LE(packet.actual, packet.length);
                EXPECT_FALSE(isLast) << "data behind the end of the frame";
                const std::uint8_t flags = answer.data.at(at + 1);
                EXPECT_EQ(answer.data.at(at), 2);
                EXPECT_EQ(flags & kHeaderEnd, kHeaderEnd);
                const bool odd = (flags & kOddFrame) != 0;
                EXPECT_TRUE(first || odd == frame.odd);
                frame.odd = odd;
                first = false;
                isLast = (flags & kFrameEnd) != 0;
                frame.data.insert(
                    frame.data.end(), answer.data.begin() + static_cast<std::ptrdiff_t>(at + 2),
                    answer.data.begin() + static_cast<std::ptrdiff_t>(at + packet.actual));
                at += packet.actual;
            }
            EXPECT_EQ(at, answer.data.size());
            if (isLast)
                return frame;
        }
    }

    std::uint32_t submit()
    {
        return m_host->submitIsochronous(endpoint::kVideoIn, kPackets, StreamModes::kPacketSize);
    }

    std::optional<UsbipClient> m_host;
    std::deque<std::uint32_t> m_waiting;
};

} // namespace

TEST_F(Video, NegotiatesItsModes)
{
    const Bytes agreed = negotiate(2, 1, 333333);
    EXPECT_EQ(agreed[2], 2);
    EXPECT_EQ(agreed[3], 1);
    EXPECT_EQ(loadLittleEndian32(&agreed[18]), 3840U * 2160 * 2);
    EXPECT_EQ(loadLittleEndian32(&agreed[22]), StreamModes::kPacketSize);
    EXPECT_EQ(m_host->controlIn(0xA1, 0x85, 0x0100, kStreaming, 2).data, (Bytes{34, 0}));
    const Bytes shortest = m_host->controlIn(0xA1, 0x82, 0x0100, kStreaming, 34).data;
    const Bytes longest = m_host->controlIn(0xA1, 0x83, 0x0100, kStreaming, 34).data;
    EXPECT_LT(loadLittleEndian32(&shortest[4]), loadLittleEndian32(&longest[4]));
    EXPECT_EQ(negotiate(9, 9, 1)[2], 1) << "what it has not becomes what it has";
}

TEST_F(Video, RawFramesAreWholeAndAlternate)
{
    negotiate(1, 3, 333333);
    start();
    bool odd = false;
    for (int i = 0; i < 4; ++i) {
        const Frame frame = receive();
        EXPECT_EQ(frame.data.size(), 640U * 360 * 2);
        EXPECT_EQ(frame.odd, odd);
        odd = !odd;
    }
    EXPECT_EQ(value("stats cam", "streaming"), "1");
    EXPECT_EQ(value("stats cam", "fourcc"), "YUYV");
    EXPECT_EQ(value("registers cam", "width"), "640");
    EXPECT_EQ(value("registers cam", "streamon"), "1");
}

TEST_F(Video, LargestCompressedFramesAreJpegFiles)
{
    negotiate(2, 1, 666666);
    start();
    const Frame frame = receive();
    ASSERT_GT(frame.data.size(), 1000U);
    EXPECT_EQ(frame.data[0], 0xFF);
    EXPECT_EQ(frame.data[1], 0xD8);
    EXPECT_EQ(frame.data[frame.data.size() - 2], 0xFF);
    EXPECT_EQ(frame.data.back(), 0xD9);
}

TEST_F(Video, PictureFollowsTheControls)
{
    const auto brightness = [](const Frame& frame) {
        std::uint64_t sum = 0;
        for (std::size_t i = 0; i < frame.data.size(); i += 2)
            sum += frame.data[i];
        return sum;
    };
    negotiate(1, 3, 333333);
    start();
    const std::uint64_t before = brightness(receive());
    request("set cam brightness 255");
    receive(); // a packet that was already being sent
    receive();
    EXPECT_GT(brightness(receive()), before + before / 10);
}

TEST_F(Video, StopsAndStartsAgain)
{
    negotiate(1, 3, 333333);
    start();
    receive();
    for (const std::uint32_t number : m_waiting)
        m_host->submitUnlink(number);
    m_waiting.clear();
    EXPECT_EQ(m_host->controlOut(0x01, 11, 0, kStreaming).status, 0);
    EXPECT_EQ(value("registers cam", "streamon"), "0");
    negotiate(2, 4, 333333);
    start();
    const Frame frame = receive();
    EXPECT_EQ(frame.data[0], 0xFF) << "the format is the new one";
    EXPECT_FALSE(frame.odd) << "a stream begins with an even frame";
}

TEST_F(Video, KeepsItsFormatWhileItStreams)
{
    const Bytes agreed = negotiate(1, 3, 333333);
    start();
    receive();
    EXPECT_EQ(m_host->controlOut(0x21, 0x01, 0x0200, kStreaming, agreed).status, -EPIPE);
    EXPECT_EQ(receive().data.size(), 640U * 360 * 2);
}

TEST_F(Video, BusyCameraRefusesTheCommit)
{
    const Bytes agreed = negotiate(1, 3, 333333);
    request("fault cam busy");
    EXPECT_EQ(m_host->controlOut(0x21, 0x01, 0x0100, kStreaming, agreed).status, 0);
    EXPECT_EQ(m_host->controlOut(0x21, 0x01, 0x0200, kStreaming, agreed).status, -EPIPE);
    request("clear cam");
    EXPECT_EQ(m_host->controlOut(0x21, 0x01, 0x0200, kStreaming, agreed).status, 0);
}

TEST_F(Video, FrozenCameraSendsNoFramesUntilTheFaultIsCleared)
{
    negotiate(1, 3, 333333);
    request("fault cam frozen");
    start();
    // A frame is due 30 times a second; control transfers are still answered.
    EXPECT_FALSE(m_commands.execute("wait cam frames>=1 300") == "ok");
    EXPECT_EQ(m_host->controlIn(0x80, 0, 0, 0, 2).status, 0);
    request("clear cam");
    EXPECT_EQ(receive().data.size(), 640U * 360 * 2);
}

TEST_F(Video, SettingsWorkWhileItStreams)
{
    negotiate(1, 3, 333333);
    start();
    for (int i = 0; i < 20; ++i) {
        const Bytes answer = exchange(*m_host, readRequest(0x5010));
        EXPECT_FALSE(payloadOf(answer).empty());
    }
    EXPECT_EQ(receive().data.size(), 640U * 360 * 2);
}
