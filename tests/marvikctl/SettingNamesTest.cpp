#include "SettingNames.h"
#include "QtPrinters.h"

#include <gtest/gtest.h>

namespace {

int parsed(const char* assignment)
{
    const auto values = SettingNames::parse({QString::fromLatin1(assignment)});
    return values ? values->first() : -1;
}

Failure failureOf(const QStringList& assignments)
{
    const auto values = SettingNames::parse(assignments);
    return values ? Failure{Failure::Kind::NoCamera, "no failure", {}} : values.failure();
}

QString shown(const char* name, int value)
{
    return SettingNames::format(**SettingNames::find(QString::fromLatin1(name)), value);
}

QJsonValue json(const char* name, int value)
{
    return SettingNames::toJson(**SettingNames::find(QString::fromLatin1(name)), value);
}

TEST(SettingNames, EveryRowOfTheTablesHasItsKey)
{
    const QStringList expected{"brightness", "contrast",    "saturation", "sharpness", "preset",
                               "framing",    "sensitivity", "fov",        "mirror"};
    EXPECT_EQ(SettingNames::names(), expected);
    Registers all = SettingNames::registersOf(expected);
    for (const DeviceSettingRow& row : DeviceSettings::rows())
        EXPECT_EQ(all.count(row.setting), 1U) << row.name;
    EXPECT_EQ(all.size(), DeviceSettings::rows().size() + 4);
}

TEST(SettingNames, ValuesHaveTheNamesOfTheTable)
{
    EXPECT_EQ(parsed("fov=60"), 60);
    EXPECT_EQ(parsed("mirror=on"), 1);
    EXPECT_EQ(parsed("mirror=off"), 0);
    EXPECT_EQ(parsed("sensitivity=low"), 30);
    EXPECT_EQ(parsed("sensitivity=medium"), 50);
    EXPECT_EQ(parsed("sensitivity=high"), 80);
    EXPECT_EQ(parsed("framing=off"), SettingNames::kFramingOff);
    EXPECT_EQ(parsed("framing=group"), SettingNames::kFramingGroup);
    EXPECT_EQ(parsed("framing=individual"), SettingNames::kFramingIndividual);
    EXPECT_EQ(parsed("framing=division"), SettingNames::kFramingDivision);
    EXPECT_EQ(parsed("preset=standard"), 0);
    EXPECT_EQ(parsed("preset=bright"), 1);
    EXPECT_EQ(parsed("preset=vivid"), 2);
}

TEST(SettingNames, PictureValuesArePercentOrPlainNumbers)
{
    EXPECT_EQ(parsed("brightness=0%"), 78);
    EXPECT_EQ(parsed("brightness=60%"), 138);
    EXPECT_EQ(parsed("brightness=100%"), 178);
    EXPECT_EQ(parsed("sharpness=78"), 78);
    EXPECT_EQ(parsed("sharpness=178"), 178);
}

TEST(SettingNames, OtherValuesAreRefused)
{
    for (const char* wrong :
         {"brightness=101%", "brightness=-1%", "brightness=77", "brightness=179", "brightness=60",
          "brightness=", "brightness=%", "brightness=60%%", "brightness=2147483648%", "fov=91",
          "fov=on", "mirror=1", "mirror=ON", "framing=custom", "preset=custom", "preset=3",
          "sensitivity=50"}) {
        const Failure failure = failureOf({QString::fromLatin1(wrong)});
        EXPECT_EQ(failure.kind, Failure::Kind::Usage) << wrong;
        EXPECT_FALSE(failure.hint.isEmpty()) << wrong;
    }
}

TEST(SettingNames, UnknownKeyNamesTheNearest)
{
    EXPECT_EQ(failureOf({"fvo=90"}).message, "unknown setting \"fvo\"");
    EXPECT_EQ(failureOf({"fvo=90"}).hint, "Did you mean \"fov\"?");
    EXPECT_TRUE(failureOf({"volume=90"}).hint.contains("brightness, contrast"));
}

TEST(SettingNames, WordsThatAreNoAssignmentAreRefused)
{
    EXPECT_EQ(failureOf({"fov"}).message, "\"fov\" is not KEY=VALUE");
    EXPECT_EQ(failureOf({"=90"}).message, "\"=90\" is not KEY=VALUE");
}

TEST(SettingNames, KeyIsGivenOnce)
{
    EXPECT_EQ(failureOf({"fov=90", "fov=60"}).message, "\"fov\" is given twice");
}

TEST(SettingNames, FramingExcludesAllButTheWidestView)
{
    EXPECT_EQ(failureOf({"framing=group", "fov=90"}).kind, Failure::Kind::Usage);
    EXPECT_EQ(failureOf({"fov=60", "framing=division"}).kind, Failure::Kind::Usage);
    EXPECT_TRUE(SettingNames::parse({"framing=group", "fov=120"}));
    EXPECT_TRUE(SettingNames::parse({"framing=off", "fov=60"}));
}

TEST(SettingNames, ValuesAreShownAsTheWindowShowsThem)
{
    EXPECT_EQ(shown("brightness", 138), "60%");
    EXPECT_EQ(shown("brightness", 78), "0%");
    EXPECT_EQ(shown("brightness", 255), "255"); // off the scale
    EXPECT_EQ(shown("fov", 90), "90");
    EXPECT_EQ(shown("fov", 75), "75");
    EXPECT_EQ(shown("mirror", 1), "on");
    EXPECT_EQ(shown("mirror", 7), "7");
    EXPECT_EQ(shown("sensitivity", 0), "low");
    EXPECT_EQ(shown("sensitivity", 31), "medium");
    EXPECT_EQ(shown("sensitivity", 51), "high");
    EXPECT_EQ(shown("sensitivity", 81), "81");
    EXPECT_EQ(shown("preset", SettingNames::kCustomPreset), "custom");
}

TEST(SettingNames, DocumentHasNumbersForWhatIsANumber)
{
    EXPECT_EQ(json("brightness", 138), QJsonValue(138));
    EXPECT_EQ(json("fov", 90), QJsonValue(90));
    EXPECT_EQ(json("mirror", 1), QJsonValue("on"));
    EXPECT_EQ(json("framing", SettingNames::kFramingGroup), QJsonValue("group"));
}

RegisterValues framing(int automatic, int division, int mode)
{
    return {{DeviceSetting::AutoFrameSwitch, automatic},
            {DeviceSetting::FrameMaster, division},
            {DeviceSetting::AutoFrameMode, mode}};
}

TEST(SettingNames, FramingIsReadFromThreeRegisters)
{
    const SettingKey& key = **SettingNames::find("framing");
    EXPECT_EQ(SettingNames::valueOf(key, framing(0, 0, 1)), SettingNames::kFramingOff);
    EXPECT_EQ(SettingNames::valueOf(key, framing(1, 0, 0)), SettingNames::kFramingGroup);
    EXPECT_EQ(SettingNames::valueOf(key, framing(1, 0, 1)), SettingNames::kFramingIndividual);
    EXPECT_EQ(SettingNames::valueOf(key, framing(1, 0, -1)), SettingNames::kFramingIndividual);
    EXPECT_EQ(SettingNames::valueOf(key, framing(0, 1, 1)), SettingNames::kFramingDivision);
    EXPECT_EQ(SettingNames::valueOf(key, {{DeviceSetting::FrameMaster, 1}}), std::nullopt);
}

TEST(SettingNames, PresetIsReadFromThePicture)
{
    RegisterValues picture{{PictureProperty::Brightness, 130},
                           {PictureProperty::Contrast, 128},
                           {PictureProperty::Saturation, 140},
                           {PictureProperty::Sharpness, 120}};
    const SettingKey& key = **SettingNames::find("preset");
    EXPECT_EQ(SettingNames::valueOf(key, picture), 2);
    picture[PictureProperty::Sharpness] = 121;
    EXPECT_EQ(SettingNames::valueOf(key, picture), SettingNames::kCustomPreset);
    picture.erase(PictureProperty::Sharpness);
    EXPECT_EQ(SettingNames::valueOf(key, picture), std::nullopt);
}

} // namespace
