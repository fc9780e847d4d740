#pragma once

/// The single-shot timers of the program that have not expired. A test that does not check the time
/// itself need not wait for it.
namespace PendingTimers {

/// How many timers with @p intervalMs are pending.
[[nodiscard]] int count(int intervalMs);

/// Makes the pending timers with @p intervalMs expire at once.
/// @return false when there is none
bool fire(int intervalMs);

/// Cancels the pending timers with @p intervalMs.
void drop(int intervalMs);

/// Cancels all. A single shot outlives the window that it was meant for, so a test that makes a new
/// window would count those of the one before.
void dropAll();

} // namespace PendingTimers
