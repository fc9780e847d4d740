#include "ProgressMeter.h"

#include <gtest/gtest.h>

using Brivane::ProgressMeter;

TEST(ProgressMeterTest, ReportsEachPercentageOnce)
{
    ProgressMeter meter;
    EXPECT_EQ(meter.advance(0, 1000), 0);
    EXPECT_EQ(meter.advance(9, 1000), std::nullopt);
    EXPECT_EQ(meter.advance(10, 1000), 1);
    EXPECT_EQ(meter.advance(999, 1000), 99);
    EXPECT_EQ(meter.advance(999, 1000), std::nullopt);
    EXPECT_EQ(meter.advance(1000, 1000), 100);
    EXPECT_EQ(meter.finish(), std::nullopt);
}

TEST(ProgressMeterTest, NeverDecreases)
{
    ProgressMeter meter;
    EXPECT_EQ(meter.advance(500, 1000), 50);
    EXPECT_EQ(meter.advance(400, 1000), std::nullopt);
    EXPECT_EQ(meter.advance(-1, 1000), std::nullopt);
    EXPECT_EQ(meter.advance(2000, 1000), 100);
}

TEST(ProgressMeterTest, WithoutALengthOnlyTheEndIsReported)
{
    ProgressMeter meter;
    EXPECT_EQ(meter.advance(500, -1), std::nullopt);
    EXPECT_EQ(meter.finish(), 100);
}

TEST(ProgressMeterTest, AnEmptyDownloadIsComplete)
{
    ProgressMeter meter;
    EXPECT_EQ(meter.advance(0, 0), 100);
}

TEST(ProgressMeterTest, CountsBeyondFourGigabytes)
{
    ProgressMeter meter;
    EXPECT_EQ(meter.advance(std::int64_t{5} << 30, std::int64_t{10} << 30), 50);
}
