#pragma once

#include "CameraSpec.h"

#include <string>
#include <utility>
#include <vector>

namespace virtualcamera {

/// What leaves a camera's video interface.
struct StreamState
{
    bool streaming = false;
    /// The format that streams or was negotiated last.
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t fourcc = 0;
    std::uint32_t rate = 0;
    /// Finished since the camera was made.
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

    /// Applies what a later plug may change.
    virtual void update(const CameraSpec& newSpec)
    {
        spec = newSpec;
        device.config() = spec.device;
    }
    virtual StreamState stream() const = 0;
    virtual HandleState handles() const = 0;
    /// Names and places by which programs reach it now, for example {"hid", "/dev/hidraw0"}.
    virtual std::vector<std::pair<std::string, std::string>> places() const = 0;

    const std::string id;
    CameraSpec spec;
    Device device;

    bool onBus = false;
    bool wasOnBus = false;
    /// Counts the times on the bus, so that a planned return does not undo a later unplug.
    unsigned connection = 0;
};

} // namespace virtualcamera
