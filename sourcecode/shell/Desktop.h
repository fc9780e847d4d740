#pragma once

#include <optional>
#include <QString>

/// What the start of the program needs to know and set about the desktop, most of it before there
/// is an application object. Defined in Desktop_<platform>.cpp.
namespace Desktop {

/// Chooses the window system.
void chooseWindowSystem();

/// Width of the primary monitor's current mode in pixels; nothing when it cannot be read.
[[nodiscard]] std::optional<int> monitorWidth();

/// A folder for the names by which instances of this user, and nobody else's, find each other.
/// After the application has its name.
[[nodiscard]] QString instanceDirectory();

/// The name of the local socket between them, for QLocalServer.
[[nodiscard]] QString instanceSocket();

/// Lets the running instance take the foreground from this one, which the user has just started.
void passForeground();

/// Names fonts to take where the window's own are not installed. After the application object
/// exists.
void setFontSubstitutes();

} // namespace Desktop
