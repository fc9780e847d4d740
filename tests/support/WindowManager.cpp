#include "WindowManager.h"

#include "Xdotool.h"

#include <QWidget>

namespace {

void request(const char* action, const QWidget& window)
{
    Xdotool::run({QLatin1String(action), QString::number(window.effectiveWinId())});
}

} // namespace

void WindowManager::minimize(const QWidget& window)
{
    request("windowminimize", window);
}

void WindowManager::activate(const QWidget& window)
{
    request("windowactivate", window);
}

void WindowManager::map(const QWidget& window)
{
    request("windowmap", window);
}
