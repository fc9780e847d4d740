#include "PictureSettings.h"
#include "ParameterKeys.h"

#include <gtest/gtest.h>

TEST(PictureSettings, EachRowIsFoundByItsProperty)
{
    for (const PictureSettingRow& row : PictureSettings::rows()) {
        EXPECT_EQ(&PictureSettings::row(row.property), &row);
        PictureParameters picture;
        picture.*row.value = 101;
        EXPECT_EQ(picture.bright + picture.contrast + picture.saturation + picture.sharpness, 101);
    }
    EXPECT_EQ(PictureSettings::row(PictureProperty::Brightness).key, ParameterKeys::Bright);
    EXPECT_EQ(PictureSettings::row(PictureProperty::Contrast).key, ParameterKeys::Contrast);
    EXPECT_EQ(PictureSettings::row(PictureProperty::Saturation).key, ParameterKeys::Saturation);
    EXPECT_EQ(PictureSettings::row(PictureProperty::Sharpness).key, ParameterKeys::Sharpness);
}

TEST(PictureSettings, SharpnessIsShownBeforeSaturation)
{
    const std::array<PictureProperty, PictureSettings::kCount> expected{
        PictureProperty::Brightness, PictureProperty::Contrast, PictureProperty::Sharpness,
        PictureProperty::Saturation};
    EXPECT_EQ(PictureSettings::shownOrder(), expected);
}

TEST(PictureSettings, PresetsHaveTheirValues)
{
    const int expected[3][4]{{128, 128, 128, 128}, {138, 128, 130, 120}, {130, 128, 140, 120}};
    for (int mode = 0; mode < 3; ++mode) {
        const std::optional<PictureParameters> preset = PictureSettings::preset(mode);
        ASSERT_TRUE(preset.has_value());
        EXPECT_EQ(preset->bright, expected[mode][0]);
        EXPECT_EQ(preset->contrast, expected[mode][1]);
        EXPECT_EQ(preset->saturation, expected[mode][2]);
        EXPECT_EQ(preset->sharpness, expected[mode][3]);
        EXPECT_EQ(preset->imageMode, mode);
    }
}

TEST(PictureSettings, OtherModesHaveNoValues)
{
    for (const int mode : {-1, 3, 4, 1000})
        EXPECT_FALSE(PictureSettings::preset(mode).has_value()) << mode;
}

TEST(PictureSettings, PercentIsTheDistanceFromTheMinimum)
{
    EXPECT_EQ(PictureSettings::percent(78), 0);
    EXPECT_EQ(PictureSettings::percent(128), 50);
    EXPECT_EQ(PictureSettings::percent(178), 100);
}

TEST(PictureSettings, ValueOutOfTheRangeCountsAsTheNearerEnd)
{
    EXPECT_EQ(PictureSettings::percent(-1), 0);
    EXPECT_EQ(PictureSettings::percent(77), 0);
    EXPECT_EQ(PictureSettings::percent(255), 100);
}
