#pragma once

#include <memory>

struct UVCDeviceInfo;

/// The picture properties of a camera's video interface, with the property ids of the platforms'
/// common processing-amplifier list.
enum class PictureProperty {
    Brightness = 0,
    Contrast = 1,
    Saturation = 3,
    Sharpness = 4,
};

/// What a camera reports about one picture property.
struct VideoProcAmpRecord
{
    PictureProperty property = PictureProperty::Brightness;
    long minimum = 0;
    long maximum = 0;
    long defaultValue = 0;
    long value = 0;
    long flags = 0; ///< capability flags of the platform; passed back with every write
    long step = 0;
};

/// Access to the picture properties of an opened camera. Calls block for one control transfer.
class VideoProcAmp
{
public:
    virtual ~VideoProcAmp() = default;

    /// Fills range, default, step and flags of @p record.
    /// @return false, with @p record unchanged, when the camera has no such property
    virtual bool getRange(VideoProcAmpRecord& record) = 0;

    /// Fills value and flags of @p record; result as getRange().
    virtual bool get(VideoProcAmpRecord& record) = 0;

    /// Sets @p value with the flags of @p record, which stays unchanged.
    virtual bool set(const VideoProcAmpRecord& record, long value) = 0;
};

/// Access to the picture properties of a listed video device, without a preview of it. On Windows
/// COM must be usable on the calling thread.
/// @return null when the device is gone or cannot be opened. Defined in
/// VideoProcAmp_<platform>.cpp.
[[nodiscard]] std::unique_ptr<VideoProcAmp> openVideoProcAmp(const UVCDeviceInfo& device);
