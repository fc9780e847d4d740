#include "Settings.h"

namespace virtualcamera {

const std::array<SettingInfo, kSettingCount>& settingInfos()
{
    static const std::array<SettingInfo, kSettingCount> infos{{
        {Setting::AutoFrameMode, 0x5030, "autoFrameMode", 0},
        {Setting::FrameMaster, 0x5040, "frameMaster", 0},
        {Setting::PickupSensitivity, 0x5070, "PickupSensitivity", 50},
        // The protocol spells the setting this way.
        {Setting::AutoFrameSwitch, 0x5080, "autoFrameSwicth", 0},
        {Setting::HorizontalMirror, 0x5090, "HorizontalMirror", 0},
        {Setting::CameraView, 0x50A0, "CameraView", 120},
    }};
    return infos;
}

const std::array<ControlInfo, kControlCount>& controlInfos()
{
    constexpr std::uint32_t userBase = 0x00980900; // V4L2_CID_BASE
    static const std::array<ControlInfo, kControlCount> infos{{
        {Control::Brightness, userBase + 0, "brightness"},
        {Control::Contrast, userBase + 1, "contrast"},
        {Control::Saturation, userBase + 2, "saturation"},
        {Control::Sharpness, userBase + 27, "sharpness"},
    }};
    return infos;
}

SettingsBank SettingsBank::factory(const std::array<ControlRange, kControlCount>& ranges)
{
    SettingsBank bank;
    for (const SettingInfo& info : settingInfos())
        bank[info.setting] = info.factoryValue;
    for (const ControlInfo& info : controlInfos())
        bank[info.control] = ranges[static_cast<std::size_t>(info.control)].defaultValue;
    return bank;
}

} // namespace virtualcamera
