#include "PacketPause.h"

#include <sys/prctl.h>
#include <thread>

void packetPause(std::chrono::milliseconds duration)
{
    // To save power, the kernel may wake an ordinary thread 50 microseconds late. Over some
    // thousand packets this adds up, so this thread asks for exact timers; see PR_SET_TIMERSLACK in
    // prctl(2).
    const int before = prctl(PR_GET_TIMERSLACK);
    prctl(PR_SET_TIMERSLACK, 1UL);
    std::this_thread::sleep_for(duration);
    prctl(PR_SET_TIMERSLACK, before > 0 ? static_cast<unsigned long>(before) : 0UL);
}
