#include "ProfileFile.h"
#include "QtPrinters.h"

#include <gtest/gtest.h>

namespace {

Result<SettingValues> parse(const QByteArray& text)
{
    return ProfileFile::parse(text, QStringLiteral("room.json"));
}

QString refusal(const QByteArray& text)
{
    const auto values = parse(text);
    if (values)
        return QStringLiteral("accepted");
    EXPECT_EQ(values.failure().exitCode(), ExitCode::Usage);
    return values.failure().message;
}

TEST(ProfileFile, TakesNamesNumbersAndPercent)
{
    const auto values = parse(R"({"schema": 1, "description": "the small room",
        "settings": {"fov": 90, "mirror": "on", "brightness": "60%", "contrast": 100}})");
    ASSERT_TRUE(values) << values.failure().message.toStdString();
    const SettingValues expected{
        {"fov", 90}, {"mirror", 1}, {"brightness", 138}, {"contrast", 100}};
    EXPECT_EQ(*values, expected);
}

TEST(ProfileFile, MayBePartial)
{
    EXPECT_EQ(parse(R"({"schema": 1, "settings": {}})")->size(), 0);
}

TEST(ProfileFile, UnknownSettingIsRefusedWithFileLineAndName)
{
    const QByteArray text = "{\n \"schema\": 1,\n \"settings\": {\n  \"fov\": 90,\n"
                            "  \"fvo\" : 60\n }\n}\n";
    EXPECT_EQ(refusal(text), "room.json:5: unknown setting \"fvo\"");
    EXPECT_EQ(parse(text).failure().hint, "Did you mean \"fov\"?");
}

TEST(ProfileFile, UnknownMemberIsRefused)
{
    EXPECT_EQ(refusal("{\n\"schema\": 1,\n\"settings\": {},\n\"serial\": \"SVAA1\"}"),
              "room.json:4: unknown member \"serial\"");
}

TEST(ProfileFile, ValuesAreChecked)
{
    EXPECT_EQ(refusal("{\"schema\": 1, \"settings\": {\n\"fov\": 91}}"),
              "room.json:2: \"91\" is no value of fov");
    for (const char* wrong : {"90.5", "-90", "null", "true", "[90]", "1e99", "\"\""})
        EXPECT_NE(refusal(QByteArray("{\"schema\": 1, \"settings\": {\"fov\": ") + wrong + "}}"),
                  "accepted")
            << wrong;
}

TEST(ProfileFile, SettingsThatExcludeEachOtherAreRefused)
{
    EXPECT_TRUE(refusal("{\"schema\": 1, \"settings\": {\"fov\": 90, \"framing\": \"group\"}}")
                    .contains("works with fov=120 only"));
}

TEST(ProfileFile, OtherSchemaIsRefused)
{
    EXPECT_EQ(refusal("{\n\"schema\": 2, \"settings\": {}}"), "room.json:2: the schema is not 1");
    EXPECT_EQ(refusal("{\"settings\": {}}"), "room.json:1: the schema is not 1");
    EXPECT_EQ(refusal("{\"schema\": 1}"), "room.json:1: there are no settings");
}

TEST(ProfileFile, SyntaxErrorHasItsLine)
{
    EXPECT_TRUE(refusal("{\n\"schema\": 1,\n\"settings\": {,}\n}").startsWith("room.json:3: "));
    EXPECT_TRUE(refusal("").startsWith("room.json:1: "));
    EXPECT_TRUE(refusal("[]").startsWith("room.json:1: "));
}

TEST(ProfileFile, TextIsReadAsItWasWritten)
{
    const SettingValues values{{"fov", 60},
                               {"framing", SettingNames::kFramingOff},
                               {"brightness", 138},
                               {"sensitivity", 80},
                               {"mirror", 0}};
    EXPECT_EQ(*parse(ProfileFile::text(values)), values);
}

TEST(ProfileFile, HoldsNoPresetAndNoViewThatFramingDecides)
{
    SettingValues camera{{"fov", 90},   {"framing", SettingNames::kFramingOff},
                         {"preset", 0}, {"brightness", 128},
                         {"mirror", 1}, {"sensitivity", 40}};
    EXPECT_EQ(ProfileFile::storable(camera), (SettingValues{{"fov", 90},
                                                            {"framing", SettingNames::kFramingOff},
                                                            {"brightness", 128},
                                                            {"mirror", 1},
                                                            {"sensitivity", 50}}));
    camera["framing"] = SettingNames::kFramingDivision;
    EXPECT_FALSE(ProfileFile::storable(camera).contains("fov"));
    EXPECT_TRUE(parse(ProfileFile::text(ProfileFile::storable(camera))));
}

TEST(ProfileFile, HoldsNoValueThatNobodyCanSet)
{
    EXPECT_EQ(ProfileFile::storable({{"brightness", 255}, {"mirror", 7}, {"fov", 75}}),
              SettingValues());
}

} // namespace
