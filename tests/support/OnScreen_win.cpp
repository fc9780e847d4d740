#include "OnScreen.h"

#include <qt_windows.h>
#include <QWidget>

namespace {

HWND handleOf(const QWidget& window)
{
    return reinterpret_cast<HWND>(window.effectiveWinId());
}

} // namespace

QRect OnScreen::placeOf(const QWidget& window)
{
    RECT area{};
    ::GetClientRect(handleOf(window), &area);
    POINT corner{0, 0};
    ::ClientToScreen(handleOf(window), &corner);
    return {corner.x, corner.y, area.right, area.bottom};
}

bool OnScreen::isShown(const QWidget& window)
{
    return ::IsWindowVisible(handleOf(window)) && !::IsIconic(handleOf(window));
}

QList<WId> OnScreen::stackingOrder()
{
    QList<WId> order;
    for (HWND window = ::GetTopWindow(nullptr); window; window = ::GetWindow(window, GW_HWNDNEXT))
        order.prepend(reinterpret_cast<WId>(window));
    return order;
}
