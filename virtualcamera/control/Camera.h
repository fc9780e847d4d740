#pragma once

#include "CameraSpec.h"

#include <string>
#include <utility>
#include <vector>

namespace virtualcamera {

/// The state of a camera's video stream.
struct StreamState
{
    bool streaming = false;
    /// The current format of the stream, or the format that was negotiated last.
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t fourcc = 0;
    std::uint32_t rate = 0;
    /// Frames that were finished since the camera was created.
    std::uint64_t frames = 0;
};

/// Open handles of the camera's nodes; 0 on a bus that cannot see them.
struct HandleState
{
    std::uint64_t hid = 0;
    std::uint64_t video = 0;
    std::uint64_t hidTotal = 0;
    std::uint64_t videoTotal = 0;
};

/// One camera: the device, and where it is on the bus. Keeps its state while unplugged. Guarded by
/// the mutex of the bus.
class Camera
{
public:
    Camera(std::string cameraId, CameraSpec cameraSpec)
        : id(std::move(cameraId))
        , spec(std::move(cameraSpec))
        , device(spec.device)
    {
    }
    virtual ~Camera() = default;
    Camera(const Camera&) = delete;
    Camera& operator=(const Camera&) = delete;

    /// Applies the parts of the spec that a later plug may change.
    virtual void update(const CameraSpec& newSpec)
    {
        spec = newSpec;
        device.config() = spec.device;
    }
    virtual StreamState stream() const = 0;
    virtual HandleState handles() const = 0;
    /// Names and paths at which programs find the camera now, for example {"hid", "/dev/hidraw0"}.
    virtual std::vector<std::pair<std::string, std::string>> places() const = 0;

    const std::string id;
    CameraSpec spec;
    Device device;

    bool onBus = false;
    bool wasOnBus = false;
    /// Incremented with every plug, so that a scheduled return does not undo a later unplug.
    unsigned connection = 0;
};

} // namespace virtualcamera
