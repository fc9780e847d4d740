#pragma once

#include "Scheduler.h"

#include <condition_variable>
#include <mutex>
#include <string>

namespace virtualcamera {

/// What all cameras of a bench share.
struct BenchContext
{
    /// Guards the state of all cameras. Held for moments only: the program waits for it.
    std::mutex mutex;
    /// Something a client of the control socket may be waiting for has happened.
    std::condition_variable changed;
    Scheduler& scheduler;
    /// Directory of the testbed.
    std::string root;
    /// The number of the last handle opened on any node.
    int lastHandle = 0;
};

} // namespace virtualcamera
