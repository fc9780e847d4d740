#pragma once

#include <chrono>

/// Pauses between the packets of a firmware transfer. A transfer has thousands of pauses, so a
/// timer that rounds 10 ms up to its own tick would cost minutes. Defined in
/// PacketPause_<platform>.cpp.
void packetPause(std::chrono::milliseconds duration);
