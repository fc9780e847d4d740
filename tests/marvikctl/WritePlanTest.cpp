#include "WritePlan.h"
#include "QtPrinters.h"
#include "RegisterPrinter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

using S = DeviceSetting;
using P = PictureProperty;

/// A camera as it leaves the factory of the virtual one: framing off, widest view.
RegisterValues camera()
{
    return {{S::AutoFrameSwitch, 0}, {S::FrameMaster, 0},        {S::AutoFrameMode, 0},
            {S::CameraView, 120},    {S::PickupSensitivity, 50}, {S::HorizontalMirror, 0},
            {P::Brightness, 128},    {P::Contrast, 128},         {P::Saturation, 128},
            {P::Sharpness, 128}};
}

std::vector<RegisterWrite> planned(const QStringList& assignments, const RegisterValues& current)
{
    const auto wanted = SettingNames::parse(assignments);
    EXPECT_TRUE(wanted);
    const auto writes = WritePlan::make(*wanted, current);
    EXPECT_TRUE(writes);
    return writes ? *writes : std::vector<RegisterWrite>();
}

TEST(WritePlan, WritesWhatDiffersOnly)
{
    EXPECT_THAT(planned({"fov=120", "mirror=off", "brightness=128", "framing=off"}, camera()),
                IsEmpty());
    EXPECT_THAT(planned({"mirror=on"}, camera()),
                ElementsAre(RegisterWrite{S::HorizontalMirror, 1}));
}

TEST(WritePlan, FramingSwitchesTheOtherModeOffFirst)
{
    RegisterValues division = camera();
    division[S::FrameMaster] = 1;
    EXPECT_THAT(
        planned({"framing=group"}, division),
        ElementsAre(RegisterWrite{S::FrameMaster, 0}, RegisterWrite{S::AutoFrameSwitch, 1}));
    RegisterValues automatic = camera();
    automatic[S::AutoFrameSwitch] = 1;
    EXPECT_THAT(
        planned({"framing=division"}, automatic),
        ElementsAre(RegisterWrite{S::AutoFrameSwitch, 0}, RegisterWrite{S::FrameMaster, 1}));
}

TEST(WritePlan, FramingIsSwitchedOnAtTheWidestView)
{
    RegisterValues narrow = camera();
    narrow[S::CameraView] = 60;
    EXPECT_THAT(planned({"framing=individual"}, narrow),
                ElementsAre(RegisterWrite{S::CameraView, 120}, RegisterWrite{S::FrameMaster, 0},
                            RegisterWrite{S::AutoFrameSwitch, 1},
                            RegisterWrite{S::AutoFrameMode, 1}));
}

TEST(WritePlan, AnotherModeOfAutomaticFramingIsOneWrite)
{
    RegisterValues automatic = camera();
    automatic[S::AutoFrameSwitch] = 1;
    EXPECT_THAT(planned({"framing=individual"}, automatic),
                ElementsAre(RegisterWrite{S::AutoFrameMode, 1}));
}

TEST(WritePlan, FramingIsSwitchedOffWhereItIsOn)
{
    RegisterValues registers = camera();
    registers[S::FrameMaster] = 1;
    EXPECT_THAT(planned({"framing=off"}, registers), ElementsAre(RegisterWrite{S::FrameMaster, 0}));
    registers[S::AutoFrameSwitch] = 1;
    EXPECT_THAT(
        planned({"framing=off"}, registers),
        ElementsAre(RegisterWrite{S::AutoFrameSwitch, 0}, RegisterWrite{S::FrameMaster, 0}));
}

TEST(WritePlan, ViewComesAfterFramingIsOff)
{
    RegisterValues registers = camera();
    registers[S::AutoFrameSwitch] = 1;
    EXPECT_THAT(planned({"fov=60", "framing=off", "mirror=on"}, registers),
                ElementsAre(RegisterWrite{S::AutoFrameSwitch, 0},
                            RegisterWrite{S::HorizontalMirror, 1},
                            RegisterWrite{S::CameraView, 60}));
}

TEST(WritePlan, ViewIsRefusedWhileTheCameraFrames)
{
    RegisterValues registers = camera();
    registers[S::AutoFrameSwitch] = 1;
    const auto writes = WritePlan::make({{"fov", 60}}, registers);
    ASSERT_FALSE(writes);
    EXPECT_EQ(writes.failure().kind, Failure::Kind::Conflict);
    EXPECT_EQ(writes.failure().exitCode(), ExitCode::NotAnswered);
}

TEST(WritePlan, WidestViewIsAllowedWhileTheCameraFrames)
{
    RegisterValues registers = camera();
    registers[S::AutoFrameSwitch] = 1;
    registers[S::CameraView] = 90;
    EXPECT_THAT(planned({"fov=120"}, registers), ElementsAre(RegisterWrite{S::CameraView, 120}));
}

TEST(WritePlan, PresetSetsThePictureAndNamedValuesComeOverIt)
{
    EXPECT_THAT(planned({"contrast=100", "preset=vivid"}, camera()),
                ElementsAre(RegisterWrite{P::Brightness, 130}, RegisterWrite{P::Contrast, 100},
                            RegisterWrite{P::Saturation, 140}, RegisterWrite{P::Sharpness, 120}));
}

TEST(WritePlan, PictureComesLastInTheOrderOfItsTable)
{
    EXPECT_THAT(planned({"sharpness=80", "brightness=80", "sensitivity=low"}, camera()),
                ElementsAre(RegisterWrite{S::PickupSensitivity, 30},
                            RegisterWrite{P::Brightness, 80}, RegisterWrite{P::Sharpness, 80}));
}

TEST(WritePlan, LevelWithoutANameIsReplacedByItsName)
{
    RegisterValues registers = camera();
    registers[S::PickupSensitivity] = 40;
    EXPECT_THAT(planned({"sensitivity=medium"}, registers),
                ElementsAre(RegisterWrite{S::PickupSensitivity, 50}));
}

TEST(WritePlan, UndoWritesOldValuesInReverseOrder)
{
    RegisterValues narrow = camera();
    narrow[S::CameraView] = 60;
    narrow[S::FrameMaster] = 1;
    const std::vector<RegisterWrite> done{
        {S::CameraView, 120}, {S::FrameMaster, 0}, {S::AutoFrameSwitch, 1}};
    EXPECT_THAT(WritePlan::undo(done, narrow),
                ElementsAre(RegisterWrite{S::AutoFrameSwitch, 0}, RegisterWrite{S::FrameMaster, 1},
                            RegisterWrite{S::CameraView, 60}));
}

TEST(WritePlan, UndoWritesARegisterOnce)
{
    EXPECT_THAT(WritePlan::undo({{S::CameraView, 120}, {S::CameraView, 90}}, camera()),
                ElementsAre(RegisterWrite{S::CameraView, 120}));
}

TEST(WritePlan, ReadsWhatItNeeds)
{
    const Registers framing{S::AutoFrameSwitch, S::FrameMaster, S::AutoFrameMode, S::CameraView};
    EXPECT_EQ(WritePlan::needed({{"fov", 90}}), framing);
    EXPECT_EQ(WritePlan::needed({{"framing", 1}}), framing);
    EXPECT_EQ(WritePlan::needed({{"mirror", 1}}), Registers{S::HorizontalMirror});
    EXPECT_EQ(WritePlan::needed({{"preset", 1}}).size(), 4U);
}

TEST(WritePlan, ResetGivesTheDefaultsOfTheWindow)
{
    const SettingValues expected{{"brightness", 128}, {"contrast", 128},
                                 {"saturation", 128}, {"sharpness", 128},
                                 {"fov", 120},        {"sensitivity", 50},
                                 {"mirror", 0},       {"framing", SettingNames::kFramingGroup}};
    EXPECT_EQ(WritePlan::factoryDefaults(), expected);
}

} // namespace
