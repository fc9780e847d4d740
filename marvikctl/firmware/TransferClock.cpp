#include "TransferClock.h"

#include <cmath>

std::optional<TransferClock::Step> TransferClock::advance(long long sent, long long size,
                                                          Clock::time_point now)
{
    const int percent = size > 0 ? static_cast<int>(sent * 100 / size) : 100;
    if (percent < m_next)
        return std::nullopt;
    m_next = percent - percent % kStepPercent + kStepPercent;
    const double elapsed = std::chrono::duration<double>(now - m_start).count();
    const double left = percent > 0 ? elapsed * (100 - percent) / percent : 0;
    return Step{percent, static_cast<int>(std::ceil(left))};
}
