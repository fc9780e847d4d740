#pragma once

#include <QLatin1String>

/// Keys of the parameter maps. The first five are also keys of device.ini.
namespace ParameterKeys {

inline constexpr QLatin1String Bright("bright");
inline constexpr QLatin1String Contrast("contrast");
inline constexpr QLatin1String Saturation("saturation");
inline constexpr QLatin1String Sharpness("sharpness");
inline constexpr QLatin1String ImageMode("imagemode");
inline constexpr QLatin1String AutoFrameSwitch("autoFrameSwicth"); // spelled so in the maps
inline constexpr QLatin1String FrameMaster("frameMaster");
inline constexpr QLatin1String AutoFrameMode("autoFrameMode");
inline constexpr QLatin1String PickupSensitivity("PickupSensitivity");
inline constexpr QLatin1String CameraView("CameraView"); // degrees
inline constexpr QLatin1String HorizontalMirror("HorizontalMirror");
inline constexpr QLatin1String Intelligent("intelligent");
inline constexpr QLatin1String FigureCenter("FigureCenter");

} // namespace ParameterKeys
