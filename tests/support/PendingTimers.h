#pragma once

/// The single-shot timers that the program has started and that have not run out. A test that is
/// not about the time itself need not wait for it.
namespace PendingTimers {

/// How many of @p intervalMs are pending.
[[nodiscard]] int count(int intervalMs);

/// Lets those of @p intervalMs that are pending now run out at once.
/// @return false when there is none
bool fire(int intervalMs);

/// Gives those of @p intervalMs up that are pending now.
void drop(int intervalMs);

} // namespace PendingTimers
