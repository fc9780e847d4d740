#pragma once

/// The picture properties of every software camera.
namespace Amplifier {

struct Range
{
    long property;
    long minimum;
    long maximum;
    long step;
    long defaultValue;
};

/// The flags from GetRange(): the camera can set these properties automatically. A value that was
/// just written or never changed is manual, so Get() returns fewer flags.
constexpr long kCapabilities = 3;
constexpr long kManual = 2;

constexpr Range kRanges[] = {
    {0, 0, 255, 1, 128}, // brightness
    {1, 10, 90, 5, 50},  // contrast
    {3, -64, 64, 2, 0},  // saturation
    {4, 0, 7, 1, 3},     // sharpness
};

/// Null for a property that the camera does not have.
[[nodiscard]] constexpr const Range* rangeOf(long property)
{
    for (const Range& range : kRanges) {
        if (range.property == property)
            return &range;
    }
    return nullptr;
}

} // namespace Amplifier
