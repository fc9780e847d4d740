#include "WindowSystem.h"

#include <qt_windows.h>

std::optional<int> WindowSystem::monitorWidth()
{
    HMONITOR monitor = ::MonitorFromWindow(::GetDesktopWindow(), MONITOR_DEFAULTTONEAREST);
    MONITORINFOEXW information{};
    information.cbSize = sizeof information;
    if (!::GetMonitorInfoW(monitor, &information))
        return std::nullopt;
    DEVMODEW mode{};
    mode.dmSize = sizeof mode;
    if (!::EnumDisplaySettingsW(information.szDevice, ENUM_CURRENT_SETTINGS, &mode))
        return std::nullopt;
    return static_cast<int>(mode.dmPelsWidth);
}
