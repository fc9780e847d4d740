#include "VideoDevices.h"
#include "VideoProcAmp.h"
#include "windows/DirectShowProcAmp.h"
#include "windows/VideoInputs.h"

std::unique_ptr<VideoProcAmp> openVideoProcAmp(const UVCDeviceInfo& device)
{
    for (const VideoInput& input : listVideoInputs()) {
        if (VideoDevices::withFallbacks(input.properties).devicePath != device.devicePath)
            continue;
        ComPtr<IBaseFilter> filter;
        if (SUCCEEDED(input.moniker->BindToObject(nullptr, nullptr, __uuidof(IBaseFilter),
                                                  filter.putVoid())))
            return std::make_unique<DirectShowProcAmp>(filter);
    }
    return nullptr;
}
