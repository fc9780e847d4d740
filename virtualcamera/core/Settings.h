#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace virtualcamera {

/// The one-byte settings of the HID interface.
enum class Setting : std::size_t {
    AutoFrameMode,
    FrameMaster,
    PickupSensitivity,
    AutoFrameSwitch,
    HorizontalMirror,
    CameraView
};
constexpr std::size_t kSettingCount = 6;

struct SettingInfo
{
    Setting setting;
    /// Reads the value; the write command is the next code.
    std::uint16_t readCommand;
    std::string_view name;
    std::uint8_t factoryValue;
};

const std::array<SettingInfo, kSettingCount>& settingInfos();

/// The picture controls of the video interface.
enum class Control : std::size_t { Brightness, Contrast, Saturation, Sharpness };
constexpr std::size_t kControlCount = 4;

struct ControlInfo
{
    Control control;
    /// The V4L2 control id.
    std::uint32_t id;
    std::string_view name;
};

const std::array<ControlInfo, kControlCount>& controlInfos();

struct ControlRange
{
    int minimum = 0;
    int maximum = 255;
    int step = 1;
    int defaultValue = 128;
};

/// The settings and the picture controls; a store command stores all of them.
struct SettingsBank
{
    std::array<std::uint8_t, kSettingCount> settings{};
    std::array<int, kControlCount> controls{};

    std::uint8_t& operator[](Setting setting)
    {
        return settings[static_cast<std::size_t>(setting)];
    }
    std::uint8_t operator[](Setting setting) const
    {
        return settings[static_cast<std::size_t>(setting)];
    }
    int& operator[](Control control) { return controls[static_cast<std::size_t>(control)]; }
    int operator[](Control control) const { return controls[static_cast<std::size_t>(control)]; }

    static SettingsBank factory(const std::array<ControlRange, kControlCount>& ranges);
};

} // namespace virtualcamera
