#pragma once

#include "PictureParameters.h"
#include "VideoProcAmp.h"

#include <array>
#include <cstddef>
#include <optional>
#include <QLatin1String>

/// Everything that distinguishes one picture value from another.
struct PictureSettingRow
{
    PictureProperty property = PictureProperty::Brightness;
    QLatin1String key;          ///< in the parameter maps and in device.ini
    const char* name = nullptr; ///< for people: "brightness"
    int PictureParameters::*value = nullptr;
    int comparisonPosition = 0; ///< see ParameterModel::isSameData()
};

/// The table of picture values, with their range, presets and factory default.
namespace PictureSettings {

constexpr std::size_t kCount = 4;

/// The range that the program offers for each picture value, whatever range a camera reports.
constexpr int kMinimum = 78;
constexpr int kMaximum = 178;
/// Each picture value of a new camera, and of one that is reset.
constexpr int kFactoryDefault = 128;

/// What is shown to people for a value, 0 to 100; a value out of the range counts as the nearer
/// end.
[[nodiscard]] int percent(int value);

/// In the order in which they are stored, preset and reset.
[[nodiscard]] const std::array<PictureSettingRow, kCount>& rows();

/// In the order in which a camera is asked for their ranges and the settings page shows them:
/// sharpness before saturation.
[[nodiscard]] const std::array<PictureProperty, kCount>& shownOrder();

/// Place of @p property in rows().
[[nodiscard]] std::size_t indexOf(PictureProperty property);
[[nodiscard]] const PictureSettingRow& row(PictureProperty property);

/// The picture values of an image mode.
/// @param imageMode SvtaPagesView::ImageMode: 0 standard, 1 bright, 2 vivid
/// @return nothing for a mode without values of its own
[[nodiscard]] std::optional<PictureParameters> preset(int imageMode);

} // namespace PictureSettings
