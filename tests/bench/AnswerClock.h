#pragma once

#include <chrono>

/// The time of the camera's last answer. Wraps hidapi's hid_read_timeout() for the whole program,
/// so that every exchange is timed to the same point.
namespace AnswerClock {

using Clock = std::chrono::steady_clock;

[[nodiscard]] Clock::time_point last();

} // namespace AnswerClock
