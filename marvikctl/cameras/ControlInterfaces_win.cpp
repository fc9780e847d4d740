#include "ControlInterfaces.h"
#include "UVCHid.h"

HidDeviceMap ControlInterfaces::list()
{
    HidDeviceMap devices;
    UVCHid::getHidDevices(devices);
    return devices;
}
