#include "NodeCamera.h"

#include "scene/ScenePainter.h"

namespace virtualcamera {

NodeCamera::NodeCamera(NodeContext& context, std::string cameraId, CameraSpec cameraSpec,
                       HidInterface::DropHandler onDrop)
    : Camera(std::move(cameraId), std::move(cameraSpec))
    , hid(context, spec.identity, device, std::move(onDrop))
    , video(context, spec.identity, device, std::make_unique<ScenePainter>())
    , metadata(spec.identity)
{
    applySpec();
}

void NodeCamera::update(const CameraSpec& newSpec)
{
    Camera::update(newSpec);
    applySpec();
}

void NodeCamera::applySpec()
{
    video.controls().setPresent(spec.hasAmplifier);
    video.setPixelFormats(spec.modes);
    hid.setBroadcast(spec.broadcast);
}

StreamState NodeCamera::stream() const
{
    const v4l2_pix_format& format = video.format();
    return {video.isStreaming(), format.width,      format.height,
            format.pixelformat,  video.frameRate(), video.framesDelivered()};
}

HandleState NodeCamera::handles() const
{
    return {hid.openHandles(), video.openHandles(), hid.totalOpens(), video.totalOpens()};
}

std::vector<std::pair<std::string, std::string>> NodeCamera::places() const
{
    std::vector<std::pair<std::string, std::string>> list;
    if (nodes.hid)
        list.emplace_back("hid", "/dev/hidraw" + std::to_string(*nodes.hid));
    if (nodes.video)
        list.emplace_back("video", "/dev/video" + std::to_string(*nodes.video));
    if (nodes.metadata)
        list.emplace_back("metadata", "/dev/video" + std::to_string(*nodes.metadata));
    return list;
}

} // namespace virtualcamera
