#include "PacketPause.h"

#include <sys/prctl.h>
#include <thread>

void packetPause(std::chrono::milliseconds duration)
{
    // The kernel may wake an ordinary thread 50 microseconds late, to save power, which a transfer
    // of some thousand packets adds up. Not this one; see PR_SET_TIMERSLACK in prctl(2).
    const int before = prctl(PR_GET_TIMERSLACK);
    prctl(PR_SET_TIMERSLACK, 1UL);
    std::this_thread::sleep_for(duration);
    prctl(PR_SET_TIMERSLACK, before > 0 ? static_cast<unsigned long>(before) : 0UL);
}
