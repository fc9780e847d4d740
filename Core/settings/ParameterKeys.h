#pragma once

#include <QLatin1String>

/// Keys of the parameter maps. The first five are also keys of device.ini.
namespace ParameterKeys {

namespace detail {

/// A QLatin1String that is a constant for every compiler: its length needs no strlen().
template <int Size>
constexpr QLatin1String literal(const char (&text)[Size])
{
    return QLatin1String(text, Size - 1);
}

} // namespace detail

inline constexpr QLatin1String Bright = detail::literal("bright");
inline constexpr QLatin1String Contrast = detail::literal("contrast");
inline constexpr QLatin1String Saturation = detail::literal("saturation");
inline constexpr QLatin1String Sharpness = detail::literal("sharpness");
inline constexpr QLatin1String ImageMode = detail::literal("imagemode");
inline constexpr QLatin1String AutoFrameSwitch =
    detail::literal("autoFrameSwicth"); // the spelling of the maps
inline constexpr QLatin1String FrameMaster = detail::literal("frameMaster");
inline constexpr QLatin1String AutoFrameMode = detail::literal("autoFrameMode");
inline constexpr QLatin1String PickupSensitivity = detail::literal("PickupSensitivity");
inline constexpr QLatin1String CameraView = detail::literal("CameraView"); // degrees
inline constexpr QLatin1String HorizontalMirror = detail::literal("HorizontalMirror");
inline constexpr QLatin1String Intelligent = detail::literal("intelligent");
inline constexpr QLatin1String FigureCenter = detail::literal("FigureCenter");

} // namespace ParameterKeys
