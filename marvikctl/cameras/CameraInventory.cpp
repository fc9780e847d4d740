#include "CameraInventory.h"

#include "UVCHid.h"
#include "VideoDevices.h"

std::vector<FoundCamera> CameraInventory::list()
{
    QMap<QString, HidDevices> devices;
    UVCHid::getHidDevices(devices);
    std::vector<FoundCamera> cameras;
    QMap<const CameraModel*, int> counts;
    for (const HidDevices& device : qAsConst(devices)) {
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
