#pragma once

#include <QPoint>

class QWidget;

/// The desktop's real pointer: its actions go through the X server and the window manager, like a
/// user's. Positions are screen positions. Each call returns when the server has processed it.
namespace Pointer {

void moveTo(const QPoint& position);
void press(int button = 1);
void release(int button = 1);
void clickAt(const QPoint& position, int button = 1);

/// Moves the pointer away from the windows of the tests.
void park();

/// The centre of @p widget on the screen.
[[nodiscard]] QPoint middleOf(const QWidget& widget);

} // namespace Pointer
