#include "PacketPause.h"

#include <gtest/gtest.h>

TEST(PacketPause, IsNeverShorterThanAsked)
{
    using namespace std::chrono_literals;
    constexpr int pauses = 20;
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < pauses; ++i)
        packetPause(10ms);
    EXPECT_GE(std::chrono::steady_clock::now() - start, pauses * 10ms);
}
