#include "core/Frame.h"
#include "StreamModes.h"

#include <gtest/gtest.h>

using namespace virtualcamera;

namespace {

StreamModes modes()
{
    return StreamModes(defaultPixelFormats());
}

} // namespace

TEST(Negotiation, StartsWithTheFirstModeAtItsBestRate)
{
    const StreamAgreement agreement = modes().agree({});
    EXPECT_EQ(agreement.formatIndex, 1);
    EXPECT_EQ(agreement.frameIndex, 1);
    EXPECT_EQ(agreement.interval, 2000000U);
}

TEST(Negotiation, TakesTheNearestInterval)
{
    EXPECT_EQ(modes().agree({2, 2, 400000}).interval, 333333U);
    EXPECT_EQ(modes().agree({2, 2, 600000}).interval, 666666U);
    EXPECT_EQ(modes().agree({2, 2, 1}).interval, 333333U);
    EXPECT_EQ(modes().agree({2, 2, 0xFFFFFFFF}).interval, 666666U);
}

TEST(Negotiation, MovesUnknownIndexesToTheFirst)
{
    for (const int format : {0, 3, 255}) {
        const StreamAgreement agreement =
            modes().agree({static_cast<std::uint8_t>(format), 1, 333333});
        EXPECT_EQ(agreement.formatIndex, 1);
    }
    EXPECT_EQ(modes().agree({1, 4, 333333}).frameIndex, 1) << "YUYV has three sizes";
    EXPECT_EQ(modes().agree({2, 4, 333333}).frameIndex, 4) << "MJPEG has four";
}

TEST(Negotiation, BlockContainsFrameAndPacketSize)
{
    const StreamModes all = modes();
    const std::vector<std::uint8_t> block = all.encode(all.agree({1, 3, 333333}));
    ASSERT_EQ(block.size(), StreamModes::kBlockSize);
    EXPECT_EQ(block[2], 1);
    EXPECT_EQ(block[3], 3);
    EXPECT_EQ(loadLittleEndian32(&block[4]), 333333U);
    EXPECT_EQ(loadLittleEndian32(&block[18]), 640U * 360 * 2);
    EXPECT_EQ(loadLittleEndian32(&block[22]), 3072U);
}

TEST(Negotiation, ReadsWhatItWrote)
{
    const StreamModes all = modes();
    const StreamAgreement wish = all.agree({2, 3, 666666});
    const StreamAgreement read = all.parse(all.encode(wish));
    EXPECT_EQ(read.formatIndex, 2);
    EXPECT_EQ(read.frameIndex, 3);
    EXPECT_EQ(read.interval, 666666U);
}

TEST(Negotiation, ReadsTheShortBlockOfAnOlderHostButNoShorterOne)
{
    const StreamModes all = modes();
    std::vector<std::uint8_t> block = all.encode(all.agree({2, 3, 666666}));
    block.resize(26);
    EXPECT_EQ(all.parse(block).frameIndex, 3);
    block.resize(7);
    EXPECT_EQ(all.parse(block).frameIndex, 1);
    EXPECT_EQ(all.parse({}).formatIndex, 1);
}

TEST(Negotiation, RawPicturesTooLargeForTheBusComeOncePerSecond)
{
    const StreamModes large(parsePixelFormats("YUYV:4096x2304"));
    EXPECT_EQ(large.agree({}).interval, 10000000U);
}
