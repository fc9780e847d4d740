#pragma once

#include <chrono>
#include <optional>

/// How long a transfer takes, and which of its steps are worth a line.
class TransferClock
{
public:
    using Clock = std::chrono::steady_clock;
    static constexpr int kStepPercent = 5;

    explicit TransferClock(Clock::time_point start)
        : m_start(start)
    {
    }

    struct Step
    {
        int percent = 0;
        int secondsLeft = 0;
    };
    /// A step when at least kStepPercent more was sent since the last one.
    [[nodiscard]] std::optional<Step> advance(long long sent, long long size,
                                              Clock::time_point now);

private:
    Clock::time_point m_start;
    int m_next = kStepPercent;
};
