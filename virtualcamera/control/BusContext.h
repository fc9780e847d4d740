#pragma once

#include "Scheduler.h"

#include <condition_variable>
#include <mutex>

namespace virtualcamera {

/// What all cameras of a bus share.
struct BusContext
{
    /// Guards the state of all cameras. Held for moments only: the program waits for it.
    std::mutex mutex;
    /// Something a client of the control socket may be waiting for has happened.
    std::condition_variable changed;
    Scheduler scheduler;
};

} // namespace virtualcamera
