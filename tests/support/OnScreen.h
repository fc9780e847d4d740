#pragma once

#include <QList>
#include <QRect>
#include <QtGui/qwindowdefs.h>

class QWidget;

/// Where windows really are: what the X server says. Qt may take a window that was just shown to be
/// at the origin of the frame that the window manager has put around it.
namespace OnScreen {

[[nodiscard]] QRect placeOf(const QWidget& window);
[[nodiscard]] bool isShown(const QWidget& window);

/// The windows of all programs from bottom to top, as the window manager has them.
[[nodiscard]] QList<WId> stackingOrder();

} // namespace OnScreen
