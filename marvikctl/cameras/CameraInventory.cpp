#include "CameraInventory.h"

#include "ControlInterfaces.h"
#include "VideoDevices.h"

#include <QHash>

std::vector<FoundCamera> CameraInventory::list()
{
    const HidDeviceMap devices = ControlInterfaces::list();
    std::vector<FoundCamera> cameras;
    QHash<const CameraModel*, int> counts;
    for (const HidDevices& device : devices) {
        if (const CameraModel* model = CameraModels::find(device))
            cameras.push_back({device, model, counts[model]++});
    }
    return cameras;
}

std::optional<UVCDeviceInfo> CameraInventory::videoOf(const FoundCamera& camera)
{
    int number = 0;
    for (const VideoDevices::Properties& properties : VideoDevices::list()) {
        UVCDeviceInfo info = VideoDevices::withFallbacks(properties);
        if (CameraModels::isVideoPath(*camera.model, info.devicePath) && number++ == camera.number)
            return info;
    }
    return std::nullopt;
}
