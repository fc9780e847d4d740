#include "Picture.h"

#include "CameraIdentity.h"
#include "core/Device.h"

namespace virtualcamera {

PictureState pictureOf(const Device& device, const CameraIdentity& identity, std::uint32_t fourcc,
                       std::uint32_t width, std::uint32_t height)
{
    const SettingsBank& bank = device.current();
    PictureState state;
    state.fourcc = fourcc;
    state.width = static_cast<int>(width);
    state.height = static_cast<int>(height);
    state.cameraName = identity.card;
    state.mirrored = bank[Setting::HorizontalMirror] != 0;
    state.fieldOfView = bank[Setting::CameraView];
    if (bank[Setting::AutoFrameSwitch] != 0)
        state.framing = Framing::Speaker;
    else if (bank[Setting::FrameMaster] != 0)
        state.framing = Framing::Stage;
    const auto normalized = [&device, &bank](Control control) {
        const ControlRange& range = device.range(control);
        const double distance = bank[control] - range.defaultValue;
        const int span =
            distance < 0 ? range.defaultValue - range.minimum : range.maximum - range.defaultValue;
        return span > 0 ? distance / span : 0.0;
    };
    state.brightness = normalized(Control::Brightness);
    state.contrast = normalized(Control::Contrast);
    state.saturation = normalized(Control::Saturation);
    state.sharpness = normalized(Control::Sharpness);
    return state;
}

} // namespace virtualcamera
