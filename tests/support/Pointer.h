#pragma once

#include <QPoint>

class QWidget;

/// The desktop's real pointer: what it does goes through the X server and the window manager, as a
/// user's hand does. Positions are those of the screen. Each call returns once the server has it.
namespace Pointer {

void moveTo(const QPoint& position);
void press(int button = 1);
void release(int button = 1);
void clickAt(const QPoint& position, int button = 1);

/// Away from where tests show windows, so that none of them is entered.
void park();

/// Middle of @p widget on the screen.
[[nodiscard]] QPoint middleOf(const QWidget& widget);

} // namespace Pointer
