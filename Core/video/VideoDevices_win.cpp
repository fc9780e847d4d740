#include "VideoDevices.h"
#include "windows/ComApartment.h"
#include "windows/VideoInputs.h"

namespace VideoDevices {

std::vector<Properties> list()
{
    const ComApartment com;
    std::vector<Properties> result;
    for (VideoInput& input : listVideoInputs())
        result.push_back(std::move(input.properties));
    return result;
}

} // namespace VideoDevices
