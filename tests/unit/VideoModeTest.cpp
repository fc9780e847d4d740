#include "VideoMode.h"
#include "QtPrinters.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <QList>

namespace {

using Format = VideoMode::Format;

VideoMode mode(int width, int height, double framesPerSecond = 30.0, Format format = Format::Yuy2)
{
    return {format, {width, height}, framesPerSecond};
}

const QSize kTarget{1280, 720};

/// The chosen mode of @p modes; the choice must not depend on their order.
std::optional<VideoMode> select(std::vector<VideoMode> modes, const QSize& target = kTarget)
{
    const std::optional<VideoMode> chosen = selectVideoMode(modes, target);
    std::reverse(modes.begin(), modes.end());
    EXPECT_EQ(selectVideoMode(modes, target), chosen);
    std::rotate(modes.begin(), modes.begin() + static_cast<long>(modes.size() / 2), modes.end());
    EXPECT_EQ(selectVideoMode(modes, target), chosen);
    return chosen;
}

} // namespace

void PrintTo(const VideoMode& m, std::ostream* out)
{
    *out << m.size.width() << 'x' << m.size.height() << '@' << m.framesPerSecond << " format "
         << static_cast<int>(m.format);
}

TEST(VideoModeSelection, WithoutModesThereIsNone)
{
    EXPECT_EQ(selectVideoMode({}, kTarget), std::nullopt);
}

TEST(VideoModeSelection, OnlyModeIsTakenWhateverItIs)
{
    for (const VideoMode& only :
         {mode(160, 120, 5), mode(3840, 2160, 1, Format::Mjpeg), mode(1280, 720, 0)})
        EXPECT_EQ(select({only}), only);
}

TEST(VideoModeSelection, ExactSizeIsTakenBeforeLargerOnes)
{
    EXPECT_EQ(select({mode(640, 480), mode(1920, 1080), mode(1280, 720), mode(3840, 2160)}),
              mode(1280, 720));
}

TEST(VideoModeSelection, SmallestCoveringSizeIsTaken)
{
    EXPECT_EQ(select({mode(640, 480), mode(3840, 2160), mode(1920, 1080)}), mode(1920, 1080));
}

TEST(VideoModeSelection, CoveringMeansBothSides)
{
    EXPECT_EQ(select({mode(1920, 719), mode(1279, 1080), mode(1920, 1080)}), mode(1920, 1080));
    EXPECT_EQ(select({mode(2560, 500), mode(1280, 800)}), mode(1280, 800));
}

TEST(VideoModeSelection, LargestSizeIsTakenWhenNoneCovers)
{
    EXPECT_EQ(select({mode(320, 240), mode(800, 600), mode(640, 480)}), mode(800, 600));
}

TEST(VideoModeSelection, FastModeIsTakenBeforeASlowOneThatCovers)
{
    EXPECT_EQ(select({mode(1920, 1080, 5), mode(640, 480, 30)}), mode(640, 480, 30));
    EXPECT_EQ(select({mode(1280, 720, 10), mode(1920, 1080, 30)}), mode(1920, 1080, 30));
}

TEST(VideoModeSelection, CompressedFastModeIsTakenBeforeASlowUncompressedOne)
{
    EXPECT_EQ(select({mode(1280, 720, 10), mode(1280, 720, 30, Format::Mjpeg)}),
              mode(1280, 720, 30, Format::Mjpeg));
}

TEST(VideoModeSelection, TwentyFourFramesAreFastEnough)
{
    EXPECT_EQ(select({mode(1280, 720, 24), mode(1920, 1080, 60)}), mode(1280, 720, 24));
    EXPECT_EQ(select({mode(1280, 720, 23.9), mode(1920, 1080, 60)}), mode(1920, 1080, 60));
}

TEST(VideoModeSelection, FastestModesStandInWhenNoneIsFastEnough)
{
    EXPECT_EQ(select({mode(1280, 720, 10), mode(640, 480, 15), mode(800, 600, 15)}),
              mode(800, 600, 15));
    EXPECT_EQ(select({mode(1920, 1080, 15), mode(1280, 720, 15), mode(640, 480, 5)}),
              mode(1280, 720, 15));
}

TEST(VideoModeSelection, UncompressedIsTakenBeforeCompressedOfTheSameSize)
{
    EXPECT_EQ(select({mode(1280, 720, 60, Format::Mjpeg), mode(1280, 720, 30, Format::Yuy2)}),
              mode(1280, 720, 30, Format::Yuy2));
    EXPECT_EQ(select({mode(1280, 720, 30, Format::Mjpeg), mode(1280, 720, 30, Format::Nv12)}),
              mode(1280, 720, 30, Format::Nv12));
}

TEST(VideoModeSelection, SizeCountsBeforeCompression)
{
    EXPECT_EQ(select({mode(1920, 1080, 30), mode(1280, 720, 30, Format::Mjpeg)}),
              mode(1280, 720, 30, Format::Mjpeg));
    EXPECT_EQ(select({mode(640, 480, 30), mode(1280, 720, 30, Format::Mjpeg)}),
              mode(1280, 720, 30, Format::Mjpeg));
}

TEST(VideoModeSelection, FasterIsTakenWhenAllElseIsEqual)
{
    EXPECT_EQ(select({mode(1280, 720, 30), mode(1280, 720, 60), mode(1280, 720, 25)}),
              mode(1280, 720, 60));
}

TEST(VideoModeSelection, FirstOfEqualModesIsTaken)
{
    const std::vector<VideoMode> modes{mode(1280, 720, 30, Format::Nv12),
                                       mode(1280, 720, 30, Format::Yuy2)};
    EXPECT_EQ(selectVideoMode(modes, kTarget), modes.front());
}

TEST(VideoModeSelection, EmptyTargetTakesTheSmallestMode)
{
    EXPECT_EQ(select({mode(1280, 720), mode(160, 120), mode(640, 480)}, {0, 0}), mode(160, 120));
}

TEST(VideoModeSelection, TypicalCameraGivesTheWidgetSizedMode)
{
    const std::vector<VideoMode> modes{mode(640, 480, 30),
                                       mode(1280, 720, 10),
                                       mode(1920, 1080, 5),
                                       mode(3840, 2160, 1),
                                       mode(640, 480, 30, Format::Mjpeg),
                                       mode(1280, 720, 30, Format::Mjpeg),
                                       mode(1920, 1080, 30, Format::Mjpeg),
                                       mode(3840, 2160, 30, Format::Mjpeg)};
    EXPECT_EQ(select(modes, {900, 506}), mode(1280, 720, 30, Format::Mjpeg));
    EXPECT_EQ(select(modes, {480, 270}), mode(640, 480, 30));
    EXPECT_EQ(select(modes, {1800, 1012}), mode(1920, 1080, 30, Format::Mjpeg));
    EXPECT_EQ(select(modes, {5120, 2880}), mode(3840, 2160, 30, Format::Mjpeg));
}

TEST(FittedSize, SameShapeFillsTheTarget)
{
    EXPECT_EQ(fittedSize({1920, 1080}, {1280, 720}), QSize(1280, 720));
    EXPECT_EQ(fittedSize({640, 360}, {1280, 720}), QSize(1280, 720));
    EXPECT_EQ(fittedSize({1280, 720}, {1280, 720}), QSize(1280, 720));
}

TEST(FittedSize, NarrowerPictureKeepsTheHeight)
{
    EXPECT_EQ(fittedSize({640, 480}, {1280, 720}), QSize(960, 720));
    EXPECT_EQ(fittedSize({480, 640}, {1280, 720}), QSize(540, 720));
}

TEST(FittedSize, WiderPictureKeepsTheWidth)
{
    EXPECT_EQ(fittedSize({2560, 1080}, {1280, 720}), QSize(1280, 540));
    EXPECT_EQ(fittedSize({1920, 1080}, {800, 800}), QSize(800, 450));
}

TEST(FittedSize, ShapeOffByTwoPixelsFillsTheTarget)
{
    EXPECT_EQ(fittedSize({1000, 1000}, {1002, 1000}), QSize(1002, 1000));
    EXPECT_EQ(fittedSize({1000, 1000}, {1000, 1002}), QSize(1000, 1002));
    EXPECT_EQ(fittedSize({1920, 1080}, {1280, 721}), QSize(1280, 721));
}

TEST(FittedSize, ShapeOffByThreePixelsKeepsItsShape)
{
    EXPECT_EQ(fittedSize({1000, 1000}, {1003, 1000}), QSize(1000, 1000));
    EXPECT_EQ(fittedSize({1000, 1000}, {1000, 1003}), QSize(1000, 1000));
}

TEST(FittedSize, NeverExceedsTheTarget)
{
    const QList<QSize> frames{{160, 120}, {1280, 720}, {1920, 1080}, {3840, 2160}, {720, 1280}};
    for (const QSize& frame : frames) {
        for (int width = 1; width < 900; width += 37) {
            for (int height = 1; height < 700; height += 29) {
                const QSize fitted = fittedSize(frame, {width, height});
                ASSERT_LE(fitted.width(), width);
                ASSERT_LE(fitted.height(), height);
                ASSERT_TRUE(fitted.width() == width || fitted.height() == height);
            }
        }
    }
}

TEST(FittedSize, EmptyTargetStaysEmpty)
{
    EXPECT_TRUE(fittedSize({1920, 1080}, {0, 0}).isEmpty());
}
