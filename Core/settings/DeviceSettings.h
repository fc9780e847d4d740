#pragma once

#include "ConstRange.h"
#include "ParameterKeys.h"

#include <array>
#include <cstdint>
#include <QLatin1String>

/// The settings that a camera keeps by itself and exchanges over its HID interface, in the order in
/// which the program reads them.
enum class DeviceSetting {
    AutoFrameSwitch,
    FrameMaster,
    AutoFrameMode,
    PickupSensitivity,
    CameraView,
    HorizontalMirror,
};

/// One value that a setting takes, and its name for people.
struct DeviceSettingValue
{
    int value;
    const char* name;
};

/// Everything that distinguishes one setting from another.
struct DeviceSettingRow
{
    DeviceSetting setting = DeviceSetting::AutoFrameSwitch;
    QLatin1String key;          ///< in the parameter maps
    std::uint16_t readCode = 0; ///< command code; ends in 0
    const char* name = nullptr; ///< for people, in lower case and without blanks: "fov"
    /// The program writes no others; a camera may report any byte.
    ConstRange<DeviceSettingValue> values;
    int factoryDefault = 0;
    int comparisonPosition = 0; ///< see ParameterModel::isSameData()

    /// The write code of a setting is its read code with the low bit set.
    [[nodiscard]] constexpr std::uint16_t writeCode() const
    {
        return static_cast<std::uint16_t>(readCode | 1U);
    }
};

/// The table of device settings: the one place that knows their codes, keys, values and defaults.
namespace DeviceSettings {

inline constexpr DeviceSettingValue kOffOn[]{{0, "off"}, {1, "on"}};
inline constexpr DeviceSettingValue kAutoFrameModes[]{{0, "group"}, {1, "individual"}};
inline constexpr DeviceSettingValue kSensitivities[]{{30, "low"}, {50, "medium"}, {80, "high"}};
inline constexpr DeviceSettingValue kDegrees[]{{60, "60"}, {90, "90"}, {120, "120"}};

/// One row for each setting, in the order in which they are read; the index is the enumerator.
inline constexpr std::array kRows{
    DeviceSettingRow{DeviceSetting::AutoFrameSwitch, ParameterKeys::AutoFrameSwitch, 0x5080,
                     "auto-framing", ConstRange(kOffOn), 1, 8},
    DeviceSettingRow{DeviceSetting::FrameMaster, ParameterKeys::FrameMaster, 0x5040, "frame-master",
                     ConstRange(kOffOn), 0, 9},
    DeviceSettingRow{DeviceSetting::AutoFrameMode, ParameterKeys::AutoFrameMode, 0x5030, "framing",
                     ConstRange(kAutoFrameModes), 0, 10},
    DeviceSettingRow{DeviceSetting::PickupSensitivity, ParameterKeys::PickupSensitivity, 0x5070,
                     "sensitivity", ConstRange(kSensitivities), 50, 12},
    DeviceSettingRow{DeviceSetting::CameraView, ParameterKeys::CameraView, 0x50A0, "fov",
                     ConstRange(kDegrees), 120, 3},
    DeviceSettingRow{DeviceSetting::HorizontalMirror, ParameterKeys::HorizontalMirror, 0x5090,
                     "mirror", ConstRange(kOffOn), 0, 2},
};

/// All settings in the order in which they are read.
[[nodiscard]] constexpr const auto& rows()
{
    return kRows;
}

[[nodiscard]] constexpr const DeviceSettingRow& row(DeviceSetting setting)
{
    return kRows[static_cast<std::size_t>(setting)];
}

/// The setting with this read code, or null.
[[nodiscard]] const DeviceSettingRow* findByReadCode(int readCode);

} // namespace DeviceSettings
