#pragma once

#include "BusContext.h"

#include <string>

namespace virtualcamera {

/// What all cameras behind device nodes share.
struct NodeContext : BusContext
{
    /// Directory of the DeviceFileTree.
    std::string root;
    /// The number of the last handle opened on any node.
    int lastHandle = 0;
};

} // namespace virtualcamera
