#pragma once

#include "BusContext.h"

#include <string>

namespace virtualcamera {

/// What all cameras of a bench share.
struct BenchContext : BusContext
{
    /// Directory of the testbed.
    std::string root;
    /// The number of the last handle opened on any node.
    int lastHandle = 0;
};

} // namespace virtualcamera
