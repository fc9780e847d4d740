#pragma once

/// The COM calls that the program makes for enumeration, preview and picture properties, between it
/// and the system's objects: counts its references, and can let one call fail. Calls of the objects
/// among each other and calls on other threads pass unchanged.
///
/// Objects are watched from their creation or their first request on, until they are gone. Main
/// thread.
namespace ComCalls {

enum class Failing {
    Once,
    FromThenOn,
};

/// Starts to count the calls, and lets call number @p failing fail without reaching its object; 0
/// for none.
void restart(int failing = 0, Failing how = Failing::Once);
/// The calls since then; creations and requests for interfaces among them, AddRef() and Release()
/// not.
[[nodiscard]] int count();
/// How many references to watched objects the program has.
[[nodiscard]] int references();
/// How many references to a video window were released while it had an owner.
[[nodiscard]] int ownedWindowsReleased();

} // namespace ComCalls
