#pragma once

#include "CameraModels.h"
#include "HidDevices.h"
#include "UVCDeviceInfo.h"

#include <optional>
#include <QString>
#include <vector>

/// The control interface of a supported camera.
struct FoundCamera
{
    HidDevices hid;
    const CameraModel* model = nullptr;
    int number = 0; ///< among the cameras of this model, in the order of their paths
};

/// The supported cameras of the system.
namespace CameraInventory {

/// In the order of their paths.
[[nodiscard]] std::vector<FoundCamera> list();

/// The video device of @p camera. The two interfaces of a camera have no common name: the k-th
/// control interface of a model belongs to its k-th video device.
[[nodiscard]] std::optional<UVCDeviceInfo> videoOf(const FoundCamera& camera);

} // namespace CameraInventory
