#include "PacketPause.h"

#include <thread>

void packetPause(std::chrono::milliseconds duration)
{
    // The kernel's high-resolution timers keep this to well under a tenth of a millisecond.
    std::this_thread::sleep_for(duration);
}
