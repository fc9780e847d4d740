#pragma once

#include <QList>
#include <QRect>
#include <QtGui/qwindowdefs.h>

class QWidget;

/// The real positions of windows, from the X server. For a window that was just shown, Qt may
/// report the origin of the frame that the window manager has put around it.
namespace OnScreen {

[[nodiscard]] QRect placeOf(const QWidget& window);
[[nodiscard]] bool isShown(const QWidget& window);

/// The windows of all programs from bottom to top, as the window manager has them.
[[nodiscard]] QList<WId> stackingOrder();

} // namespace OnScreen
