#include "PictureSettings.h"

#include "ParameterKeys.h"

#include <algorithm>

namespace {

constexpr std::array<PictureSettingRow, PictureSettings::kCount> kRows{{
    {PictureProperty::Brightness, ParameterKeys::Bright, "brightness", &PictureParameters::bright,
     4},
    {PictureProperty::Contrast, ParameterKeys::Contrast, "contrast", &PictureParameters::contrast,
     5},
    {PictureProperty::Saturation, ParameterKeys::Saturation, "saturation",
     &PictureParameters::saturation, 6},
    {PictureProperty::Sharpness, ParameterKeys::Sharpness, "sharpness",
     &PictureParameters::sharpness, 7},
}};

constexpr std::array<PictureProperty, PictureSettings::kCount> kShownOrder{
    PictureProperty::Brightness, PictureProperty::Contrast, PictureProperty::Sharpness,
    PictureProperty::Saturation};

struct Preset
{
    int bright;
    int contrast;
    int saturation;
    int sharpness;
};

// The index is the image mode.
constexpr std::array<Preset, 3> kPresets{{
    {128, 128, 128, 128}, // standard
    {138, 128, 130, 120}, // bright
    {130, 128, 140, 120}, // vivid
}};

} // namespace

int PictureSettings::percent(int value)
{
    static_assert(kMaximum - kMinimum == 100, "a step of the range is one percent");
    return std::clamp(value, kMinimum, kMaximum) - kMinimum;
}

const std::array<PictureSettingRow, PictureSettings::kCount>& PictureSettings::rows()
{
    return kRows;
}

const std::array<PictureProperty, PictureSettings::kCount>& PictureSettings::shownOrder()
{
    return kShownOrder;
}

std::size_t PictureSettings::indexOf(PictureProperty property)
{
    const auto found =
        std::find_if(kRows.begin(), kRows.end(),
                     [property](const PictureSettingRow& row) { return row.property == property; });
    return static_cast<std::size_t>(found - kRows.begin());
}

const PictureSettingRow& PictureSettings::row(PictureProperty property)
{
    return kRows.at(indexOf(property));
}

std::optional<PictureParameters> PictureSettings::preset(int imageMode)
{
    if (imageMode < 0 || imageMode >= static_cast<int>(kPresets.size()))
        return std::nullopt;
    const Preset& values = kPresets.at(static_cast<std::size_t>(imageMode));
    PictureParameters picture;
    picture.bright = values.bright;
    picture.contrast = values.contrast;
    picture.saturation = values.saturation;
    picture.sharpness = values.sharpness;
    picture.imageMode = imageMode;
    return picture;
}
