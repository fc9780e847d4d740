#pragma once

class QWidget;

/// What the user requests of the window manager, past the program: with the keyboard, or in a task
/// bar. Each call returns when the request is sent.
namespace WindowManager {

void minimize(const QWidget& window);
/// Restores and raises the window, as a task bar does.
void activate(const QWidget& window);
/// Restores the window only.
void map(const QWidget& window);

} // namespace WindowManager
