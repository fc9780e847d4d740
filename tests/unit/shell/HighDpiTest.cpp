#include "HighDpi.h"

#include <climits>
#include <gtest/gtest.h>
#include <QGuiApplication>

TEST(HighDpi, MonitorOf2048PixelsIsScaled)
{
    EXPECT_TRUE(HighDpi::wantsScaling(2048));
    EXPECT_TRUE(HighDpi::wantsScaling(3840));
    EXPECT_TRUE(HighDpi::wantsScaling(INT_MAX));
}

TEST(HighDpi, NarrowerMonitorIsNotScaled)
{
    EXPECT_FALSE(HighDpi::wantsScaling(2047));
    EXPECT_FALSE(HighDpi::wantsScaling(1920));
    EXPECT_FALSE(HighDpi::wantsScaling(0));
    EXPECT_FALSE(HighDpi::wantsScaling(-4096));
}

TEST(HighDpi, UnknownMonitorIsNotScaled)
{
    EXPECT_FALSE(HighDpi::wantsScaling(std::nullopt));
}

TEST(HighDpi, ScalingIsExactAndHasSharpPictures)
{
    using Policy = Qt::HighDpiScaleFactorRoundingPolicy;
    const auto attributes = {Qt::AA_EnableHighDpiScaling, Qt::AA_UseHighDpiPixmaps};
    const Policy before = QGuiApplication::highDpiScaleFactorRoundingPolicy();
    for (const Qt::ApplicationAttribute attribute : attributes)
        EXPECT_FALSE(QCoreApplication::testAttribute(attribute));

    HighDpi::enableScaling();
    for (const Qt::ApplicationAttribute attribute : attributes)
        EXPECT_TRUE(QCoreApplication::testAttribute(attribute));
    EXPECT_EQ(QGuiApplication::highDpiScaleFactorRoundingPolicy(), Policy::PassThrough);

    for (const Qt::ApplicationAttribute attribute : attributes)
        QCoreApplication::setAttribute(attribute, false);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(before);
}
