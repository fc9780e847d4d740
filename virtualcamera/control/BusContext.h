#pragma once

#include "Scheduler.h"

#include <condition_variable>
#include <mutex>

namespace virtualcamera {

/// What all cameras of a bus share.
struct BusContext
{
    /// Guards the state of all cameras. Held only for short times, because the program waits for
    /// it.
    std::mutex mutex;
    /// Notified when something has changed for which a client of the control socket may wait.
    std::condition_variable changed;
    Scheduler scheduler;
};

} // namespace virtualcamera
