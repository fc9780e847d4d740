#pragma once

/// The right to put a window in front of all others. Defined in ForegroundRight_<platform>.cpp.
namespace ForegroundRight {

/// Lets the running instance take the foreground from this one, which the user has just started.
void passToOtherInstance();

} // namespace ForegroundRight
