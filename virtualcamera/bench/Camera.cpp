#include "Camera.h"

#include "scene/ScenePainter.h"

namespace virtualcamera {

Camera::Camera(BenchContext& context, std::string cameraId, CameraSpec cameraSpec,
               HidInterface::DropHandler onDrop)
    : id(std::move(cameraId))
    , spec(std::move(cameraSpec))
    , device(spec.device)
    , hid(context, spec.identity, device, std::move(onDrop))
    , video(context, spec.identity, device, std::make_unique<ScenePainter>())
    , metadata(spec.identity)
{
    update(spec);
}

void Camera::update(const CameraSpec& newSpec)
{
    spec = newSpec;
    device.config() = spec.device;
    video.controls().setPresent(spec.hasAmplifier);
    video.setPixelFormats(spec.modes);
    hid.setBroadcast(spec.broadcast);
}

} // namespace virtualcamera
