#include "linux/V4l2ProcAmp.h"
#include "UVCDeviceInfo.h"
#include "VideoProcAmp.h"

std::unique_ptr<VideoProcAmp> openVideoProcAmp(const UVCDeviceInfo& device)
{
    auto controls = std::make_unique<V4l2ProcAmp>(device.displayName);
    if (!controls->isOpen())
        return nullptr;
    return controls;
}
