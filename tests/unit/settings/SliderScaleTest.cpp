#include "SliderScale.h"
#include "PictureSettings.h"
#include "QtPrinters.h"

#include <gtest/gtest.h>

using namespace SliderScale;

TEST(SliderScalePercent, CountsFromTheMinimum)
{
    for (int value = PictureSettings::kMinimum; value <= PictureSettings::kMaximum; ++value)
        EXPECT_EQ(percent(value), value - 78);
}

TEST(SliderScalePercent, ValueOutsideTheScaleCountsAsTheNearerEnd)
{
    EXPECT_EQ(percent(0), 0);
    EXPECT_EQ(percent(77), 0);
    EXPECT_EQ(percent(179), 100);
    EXPECT_EQ(percent(255), 100);
}

TEST(SliderScaleLabel, MinimumHasNoPercentSign)
{
    EXPECT_EQ(labelText(78), QStringLiteral("0"));
    EXPECT_EQ(labelText(79), QStringLiteral("1%"));
    EXPECT_EQ(labelText(128), QStringLiteral("50%"));
    EXPECT_EQ(labelText(178), QStringLiteral("100%"));
}

TEST(SliderScaleValueAt, HalfAHandleFromEitherEndIsTheEndOfTheScale)
{
    for (int x = -20; x <= 8; ++x)
        EXPECT_EQ(valueAt(x, 165, 78, 178), 78) << x;
    for (int x = 157; x <= 200; ++x)
        EXPECT_EQ(valueAt(x, 165, 78, 178), 178) << x;
}

TEST(SliderScaleValueAt, IsTruncatedBetween)
{
    EXPECT_EQ(valueAt(9, 165, 78, 178), 78);  // 100 / 149
    EXPECT_EQ(valueAt(10, 165, 78, 178), 79); // 200 / 149
    EXPECT_EQ(valueAt(82, 165, 78, 178), 127);
    EXPECT_EQ(valueAt(83, 165, 78, 178), 128);
    EXPECT_EQ(valueAt(156, 165, 78, 178), 177);
}

TEST(SliderScaleValueAt, IsExactWithOnePixelPerValue)
{
    for (int step = 0; step <= 100; ++step)
        EXPECT_EQ(valueAt(8 + step, 116, 78, 178), 78 + step);
}

TEST(SliderScaleValueAt, IncreasesFromLeftToRightAndStaysInRange)
{
    for (int width = 0; width <= 400; ++width) {
        int last = 78;
        for (int x = -5; x <= width + 5; ++x) {
            const int value = valueAt(x, width, 78, 178);
            ASSERT_GE(value, last);
            ASSERT_LE(value, 178);
            last = value;
        }
    }
}

TEST(SliderScaleValueAt, SliderNoWiderThanItsHandleHasOnlyTheMinimum)
{
    EXPECT_EQ(valueAt(8, 16, 78, 178), 78);
    EXPECT_EQ(valueAt(100, 3, 78, 178), 78);
}
