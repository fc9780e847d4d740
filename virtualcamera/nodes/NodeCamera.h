#pragma once

#include "Camera.h"
#include "CameraTopology.h"
#include "HidInterface.h"
#include "MetadataInterface.h"
#include "NodeContext.h"
#include "VideoInterface.h"

#include <string>

namespace virtualcamera {

/// A camera behind device nodes. Guarded by the bus's mutex.
class NodeCamera : public Camera
{
public:
    NodeCamera(NodeContext& context, std::string cameraId, CameraSpec cameraSpec,
               HidInterface::DropHandler onDrop);

    void update(const CameraSpec& newSpec) override;
    StreamState stream() const override;
    HandleState handles() const override;
    std::vector<std::pair<std::string, std::string>> places() const override;

    HidInterface hid;
    VideoInterface video;
    MetadataInterface metadata;

    NodeNumbers nodes;
    /// Its devices in sysfs now.
    std::vector<SysfsDevice> devices;

private:
    void applySpec();
};

} // namespace virtualcamera
