#pragma once

#include <chrono>

/// When the camera's last answer came. Stands before hidapi's hid_read_timeout() for the whole
/// program, so that an exchange is timed to the same point whoever makes it.
namespace AnswerClock {

using Clock = std::chrono::steady_clock;

[[nodiscard]] Clock::time_point last();

} // namespace AnswerClock
