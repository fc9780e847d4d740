#include "VideoDevices.h"
#include "QtPrinters.h"

#include <gtest/gtest.h>

namespace {

UVCDeviceInfo entry(const QString& display, const std::optional<QString>& friendly,
                    const std::optional<QString>& path)
{
    return VideoDevices::withFallbacks({display, friendly, path});
}

} // namespace

TEST(VideoDevicesFallback, KnownPropertiesStayAsTheyAre)
{
    EXPECT_EQ(entry("display", "friendly", "path"), (UVCDeviceInfo{"display", "friendly", "path"}));
}

TEST(VideoDevicesFallback, MissingFriendlyNameRepeatsTheDisplayName)
{
    EXPECT_EQ(entry("display", std::nullopt, "path"),
              (UVCDeviceInfo{"display", "display", "path"}));
}

TEST(VideoDevicesFallback, MissingPathRepeatsTheFriendlyName)
{
    EXPECT_EQ(entry("display", "friendly", std::nullopt),
              (UVCDeviceInfo{"display", "friendly", "friendly"}));
}

TEST(VideoDevicesFallback, DeviceWithADisplayNameAloneRepeatsItTwice)
{
    EXPECT_EQ(entry("display", std::nullopt, std::nullopt),
              (UVCDeviceInfo{"display", "display", "display"}));
}

TEST(VideoDevicesFallback, PropertyThatIsThereButEmptyIsNotMissing)
{
    EXPECT_EQ(entry("display", "", std::nullopt), (UVCDeviceInfo{"display", "", ""}));
    EXPECT_EQ(entry("display", "friendly", ""), (UVCDeviceInfo{"display", "friendly", ""}));
}

TEST(VideoDevicesEntry, IsEqualOnlyInAllThreeFields)
{
    const UVCDeviceInfo info{"display", "friendly", "path"};
    EXPECT_TRUE(info == (UVCDeviceInfo{"display", "friendly", "path"}));
    EXPECT_FALSE(info == (UVCDeviceInfo{"other", "friendly", "path"}));
    EXPECT_FALSE(info == (UVCDeviceInfo{"display", "other", "path"}));
    EXPECT_FALSE(info == (UVCDeviceInfo{"display", "friendly", "other"}));
}
