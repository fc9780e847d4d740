#pragma once

#include "../VideoDevices.h"
#include "ComPtr.h"

#include <objidl.h>
#include <vector>

/// One device of the system's video input category.
struct VideoInput
{
    ComPtr<IMoniker> moniker;
    VideoDevices::Properties properties;
};

/// All of them in enumeration order. COM must be usable on the calling thread, and the monikers
/// belong to it.
[[nodiscard]] std::vector<VideoInput> listVideoInputs();
